#include "CLI/SettingPlan.h"

#include "CLI/Reports/ReadReport.h"
#include "Core/Device/DPIRange.h"
#include "Core/Device/DeviceDefaults.h"
#include "Core/HID/RazerProtocol.h"

#include <algorithm>
#include <array>
#include <limits>

namespace kelmoth {

namespace {

using Kind = SettingStep::Kind;
using Part = SettingStep::Part;
using JSON = nlohmann::ordered_json;

/// A position counted from 1.
Int counted(Int position)
{
    return position < std::numeric_limits<Int>::max() ? position + 1 : position;
}

/// Whether both have the same effect when sent to a mouse.
bool isSameLight(RGBZone zone, const RGBSetting &a, const RGBSetting &b, const RazerDevice &device)
{
    using namespace RazerProtocol;
    return createSetRGBReport(zone, a, device) == createSetRGBReport(zone, b, device) &&
           createSetBrightnessReport(zone, a.brightness, device) ==
               createSetBrightnessReport(zone, b.brightness, device);
}

class Planner {
public:
    Planner(const SettingsFile &file, const DeviceReading &mouse, const RazerDevice &device)
        : m_record(file.record), m_liftOffLevel(file.liftOffLevel), m_mouse(mouse), m_device(device)
    {
    }

    std::vector<SettingStep> plan()
    {
        planStages();
        for (const auto &[zone, setting] : m_record.rgbSettings) {
            planLight(zone, setting);
        }
        for (const auto &[button, action] : m_record.buttonMappings) {
            planButton(button, action);
        }
        planLiftOff();
        planRest();
        return std::move(m_steps);
    }

private:
    using Write = decltype(SettingStep::write);

    void add(Part part, std::string setting, JSON from, JSON to, Kind kind, Write write = {},
             std::string reason = {})
    {
        m_steps.push_back({part, std::move(setting), std::move(from), std::move(to), kind, std::move(reason),
                           std::move(write)});
    }

    void planStages()
    {
        const auto &held = m_mouse.state.dpiStages;
        const auto &wanted = m_record.dpiStages;
        if (m_mouse.unanswered.dpiStages) {
            add(Part::dpi, "DPI stages", nullptr, wanted.size(), Kind::unanswered);
            return;
        }
        if (held.size() != wanted.size()) {
            add(Part::dpi, "number of DPI stages", held.size(), wanted.size(), Kind::unsupported);
        }
        for (std::size_t i = 0; i < std::min(held.size(), wanted.size()); ++i) {
            const Int dpi = wanted[i].dpi;
            if (dpi != held[i].dpi) {
                const bool isValid = isValidDPI(dpi, m_device.capabilities());
                add(Part::dpi, "DPI of stage " + std::to_string(i + 1), held[i].dpi, dpi,
                    isValid ? Kind::write : Kind::unsupported,
                    [dpi, i](auto &manager) { return manager.changeDPI(dpi, static_cast<Int>(i)); });
            }
        }
        const Int stage = m_record.currentDPIStage;
        if (stage != m_mouse.state.currentDPIStage) {
            const bool isStage = stage >= 0 && stage < std::ssize(held);
            add(Part::dpi, "active stage", counted(m_mouse.state.currentDPIStage), counted(stage),
                isStage ? Kind::write : Kind::unsupported,
                [stage](auto &manager) { return manager.changeDPIStage(stage); });
        }
    }

    void planLight(RGBZone zone, const RGBSetting &setting)
    {
        const auto held = m_mouse.state.rgbSettings.find(zone);
        const bool isHeld = held != m_mouse.state.rgbSettings.end();
        const bool isSupported = m_device.capabilities().offers(zone, setting);
        if (isHeld && isSupported && isSameLight(zone, held->second, setting, m_device)) {
            return;
        }
        const auto kind = isHeld ? Kind::write : Kind::unanswered;
        add(Part::lighting, "lighting of " + wordOf(zone), isHeld ? JSON(lightText(held->second)) : JSON(),
            lightText(setting), isSupported ? kind : Kind::unsupported,
            [zone, setting](auto &manager) { return manager.changeRGB(zone, setting); });
    }

    void planButton(MouseButton button, const ButtonAction &wanted)
    {
        const auto held = m_mouse.state.buttonMappings.find(button);
        const bool isHeld = held != m_mouse.state.buttonMappings.end();
        const auto obstacle = obstacleTo(button, wanted, Vocabulary::of(m_device));
        const auto action = canonical(wanted);
        if (isHeld && !obstacle && held->second.toButtonFunction() == action.toButtonFunction()) {
            return;
        }
        const bool isSupported = !obstacle && defaultButtonMappings(m_device).contains(button);
        const auto kind = isHeld ? Kind::write : Kind::unanswered;
        const auto write = [=](auto &manager) {
            return manager.changeButtonMapping(button, action, 0, false);
        };
        add(Part::buttons, "button " + wordOf(button), isHeld ? JSON(actionText(held->second)) : JSON(),
            actionText(obstacle ? wanted : action), isSupported ? kind : Kind::unsupported, write,
            obstacle.value_or(""));
    }

    void planLiftOff()
    {
        const auto &held = m_mouse.liftOffLevel;
        if (m_liftOffLevel && m_liftOffLevel != held) {
            add(Part::liftOff, "lift-off distance", held ? JSON(liftOffWord(*held)) : JSON(),
                liftOffWord(*m_liftOffLevel), held ? Kind::write : Kind::unanswered,
                [level = *m_liftOffLevel](auto &manager) { return manager.changeLiftOff(level); });
        }
    }

    /// Adds what is in the record but cannot be set by a command.
    void planRest()
    {
        const auto &held = m_mouse.state;
        using Item = std::tuple<const char *, JSON, JSON>;
        const std::array rest{
            Item{"polling rate", held.pollingRate, m_record.pollingRate},
            Item{"hyper-scroll", held.hyperScrollEnabled, m_record.hyperScrollEnabled},
            Item{"wheel mode", wordOf(held.scrollWheelMode), wordOf(m_record.scrollWheelMode)},
        };
        for (const auto &[setting, from, to] : rest) {
            if (from != to) {
                add(Part::rest, setting, from, to, Kind::unsupported);
            }
        }
    }

    const DeviceState &m_record;
    const std::optional<Int> m_liftOffLevel; ///< from the file, 0 to 2
    const DeviceReading &m_mouse;
    const RazerDevice &m_device;
    std::vector<SettingStep> m_steps;
};

QCoro::Task<StepResult> perform(SettingStep step, Mouse *mouse)
{
    StepResult result{"done"};
    if (step.kind == Kind::unsupported) {
        result = {"unsupported", step.reason};
    } else if (step.kind == Kind::unanswered) {
        result = {"failed", "the mouse did not say what it has now"};
    } else {
        const WriteResult written = co_await step.write(mouse->session->manager());
        if (const auto failure = mouse->failureOf(written)) {
            result = {"failed", failure->message};
        }
    }
    co_return result;
}

/// "DPI of stage 2: 800 -> 900: done"
std::string resultLine(const SettingStep &step, const StepResult &result)
{
    const auto shown = [](const JSON &value) {
        const auto text = value.is_string() ? value.get<std::string>() : value.dump();
        return value.is_null() ? "none" : text;
    };
    const std::string word(result.word);
    return step.setting + ": " + shown(step.from) + " -> " + shown(step.to) + ": " +
           (word == "unsupported" ? "not supported by this mouse" : word) +
           (result.reason.empty() ? "" : " (" + result.reason + ')');
}

JSON resultJSON(const SettingStep &step, const StepResult &result)
{
    return {{"setting", step.setting},
            {"from", step.from},
            {"to", step.to},
            {"result", result.word},
            {"reason", result.reason.empty() ? JSON() : JSON(result.reason)}};
}

} // namespace

std::vector<SettingStep> planSettings(const SettingsFile &file, const DeviceReading &mouse,
                                      const RazerDevice &device)
{
    return Planner(file, mouse, device).plan();
}

QCoro::Task<std::optional<Failure>> takeSteps(std::vector<SettingStep> steps, Mouse *mouse)
{
    auto &session = *mouse->session;
    const bool isJSON = session.options().json;
    auto results = JSON::array();
    std::optional<Failure> failure;
    for (const auto &step : steps) {
        const StepResult result = co_await perform(step, mouse);
        if (std::string_view(result.word) == "failed") {
            failure = Failure{Failure::Code::refused, "the mouse did not take every setting"};
        }
        results.push_back(resultJSON(step, result));
        if (!isJSON) {
            session.output().print(session.terminal().styled(resultLine(step, result), Style::plain) + '\n');
        }
    }
    auto loss = session.flushDefaults();
    if (failure && loss) {
        session.output().complain(loss->message);
    } else if (loss) {
        failure = loss;
    }
    if (isJSON) {
        session.output().printJSON(
            {{"schema", schema}, {"results", results}, {"error", failure ? errorJSON(*failure) : JSON()}});
    } else if (steps.empty()) {
        session.output().print("the mouse has these settings already\n");
    }
    co_return failure;
}

} // namespace kelmoth
