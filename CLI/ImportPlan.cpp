#include "CLI/ImportPlan.h"

#include "CLI/SettingWords.h"
#include "Core/Device/DPIRange.h"
#include "Core/Device/DeviceDefaults.h"
#include "Core/HID/RazerProtocol.h"

#include <algorithm>
#include <limits>

namespace kelmoth {

namespace {

using Kind = ImportStep::Kind;
using JSON = nlohmann::ordered_json;

/// A position as users count.
Int counted(Int position)
{
    return position < std::numeric_limits<Int>::max() ? position + 1 : position;
}

/// Whether a mouse that is sent the one is as if it were sent the other.
bool isSameLight(RGBZone zone, const RGBSetting &a, const RGBSetting &b, const RazerDevice &device)
{
    using namespace RazerProtocol;
    return createSetRGBReport(zone, a, device) == createSetRGBReport(zone, b, device) &&
           createSetBrightnessReport(zone, a.brightness, device) ==
               createSetBrightnessReport(zone, b.brightness, device);
}

bool isOffered(RGBZone zone, const RGBSetting &setting, const DeviceCapabilities &capabilities)
{
    const auto &effects = capabilities.rgbEffects;
    return std::ranges::find(capabilities.rgbZones, zone) != capabilities.rgbZones.end() &&
           std::ranges::find(effects, setting.effect) != effects.end() && setting.brightness >= 0.0 &&
           setting.brightness <= 1.0;
}

class Planner {
public:
    Planner(const SettingsFile &file, const DeviceReading &mouse, const RazerDevice &device)
        : m_record(file.record), m_liftOffLevel(file.liftOffLevel), m_mouse(mouse), m_device(device)
    {
    }

    std::vector<ImportStep> plan()
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
    void planStages()
    {
        const auto &held = m_mouse.state.dpiStages;
        const auto &wanted = m_record.dpiStages;
        if (m_mouse.unanswered.dpiStages) {
            m_steps.push_back({"DPI stages", nullptr, wanted.size(), Kind::unanswered, {}});
            return;
        }
        if (held.size() != wanted.size()) {
            m_steps.push_back({"number of DPI stages", held.size(), wanted.size(), Kind::unsupported, {}});
        }
        for (std::size_t i = 0; i < std::min(held.size(), wanted.size()); ++i) {
            const Int dpi = wanted[i].dpi;
            if (dpi == held[i].dpi) {
                continue;
            }
            const bool isValid = isValidDPI(dpi, m_device.capabilities());
            m_steps.push_back({"DPI of stage " + std::to_string(i + 1),
                               held[i].dpi,
                               dpi,
                               isValid ? Kind::write : Kind::unsupported,
                               {},
                               [dpi, stage = static_cast<Int>(i)](DeviceManager &manager) {
                                   return manager.setDPI(dpi, stage);
                               }});
        }
        const Int stage = m_record.currentDPIStage;
        if (stage != m_mouse.state.currentDPIStage) {
            const bool isStage = stage >= 0 && stage < std::ssize(held);
            m_steps.push_back({"active stage",
                               counted(m_mouse.state.currentDPIStage),
                               counted(stage),
                               isStage ? Kind::write : Kind::unsupported,
                               {},
                               [stage](DeviceManager &manager) { return manager.setDPIStage(stage); }});
        }
    }

    void planLight(RGBZone zone, const RGBSetting &setting)
    {
        const auto held = m_mouse.state.rgbSettings.find(zone);
        const bool isHeld = held != m_mouse.state.rgbSettings.end();
        const bool isSupported = isOffered(zone, setting, m_device.capabilities());
        if (isHeld && isSupported && isSameLight(zone, held->second, setting, m_device)) {
            return;
        }
        ImportStep step{"lighting of " + std::string(rawValue(zone)),
                        isHeld ? JSON(lightText(held->second)) : JSON(), lightText(setting)};
        if (!isSupported) {
            step.kind = Kind::unsupported;
        } else if (!isHeld) {
            step.kind = Kind::unanswered;
        }
        step.write = [zone, setting](DeviceManager &manager) { return manager.setRGB(zone, setting); };
        m_steps.push_back(std::move(step));
    }

    void planButton(MouseButton button, const ButtonAction &wanted)
    {
        const auto held = m_mouse.state.buttonMappings.find(button);
        const bool isHeld = held != m_mouse.state.buttonMappings.end();
        const auto obstacle = obstacleTo(button, wanted, m_device);
        const auto action = canonical(wanted);
        if (isHeld && !obstacle && held->second.toButtonFunction() == action.toButtonFunction()) {
            return;
        }
        ImportStep step{"button " + std::string(rawValue(button)),
                        isHeld ? JSON(actionText(held->second)) : JSON(),
                        actionText(obstacle ? wanted : action)};
        if (obstacle || !defaultButtonMappings(m_device).contains(button)) {
            step.kind = Kind::unsupported;
            step.reason = obstacle.value_or("");
        } else if (!isHeld) {
            step.kind = Kind::unanswered;
        }
        step.write = [button, action](DeviceManager &manager) {
            return manager.setButtonMapping(button, action, 0, false);
        };
        m_steps.push_back(std::move(step));
    }

    void planLiftOff()
    {
        const auto &held = m_mouse.liftOffLevel;
        if (!m_liftOffLevel || m_liftOffLevel == held) {
            return;
        }
        const auto word = [](Int level) { return JSON(liftOffWords.at(static_cast<std::size_t>(level))); };
        m_steps.push_back(
            {"lift-off distance",
             held ? word(*held) : JSON(),
             word(*m_liftOffLevel),
             held ? Kind::write : Kind::unanswered,
             {},
             [level = *m_liftOffLevel](DeviceManager &manager) { return manager.setLiftOff(level); }});
    }

    /// What the record holds and no command of the mouse sets.
    void planRest()
    {
        const auto &held = m_mouse.state;
        const auto add = [this](const char *setting, const JSON &from, const JSON &to) {
            if (from != to) {
                m_steps.push_back({setting, from, to, Kind::unsupported, {}});
            }
        };
        add("polling rate", held.pollingRate, m_record.pollingRate);
        add("hyper-scroll", held.hyperScrollEnabled, m_record.hyperScrollEnabled);
        add("wheel mode", rawValue(held.scrollWheelMode), rawValue(m_record.scrollWheelMode));
    }

    const DeviceState &m_record;
    const std::optional<Int> m_liftOffLevel; ///< of the file, 0 to 2
    const DeviceReading &m_mouse;
    const RazerDevice &m_device;
    std::vector<ImportStep> m_steps;
};

} // namespace

std::vector<ImportStep> importPlan(const SettingsFile &file, const DeviceReading &mouse,
                                   const RazerDevice &device)
{
    return Planner(file, mouse, device).plan();
}

} // namespace kelmoth
