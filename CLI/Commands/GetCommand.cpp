#include "CLI/Arguments.h"
#include "CLI/MouseCommand.h"
#include "CLI/Reports/ReadReport.h"
#include "Core/Device/DeviceDefaults.h"
#include "Core/HID/RazerProtocol.h"

#include <CLI/CLI.hpp>

#include <array>

namespace kelmoth {

namespace {

using JSON = nlohmann::ordered_json;

/// A value for scripts: no quotes, list members separated by spaces.
std::string bareText(const JSON &value)
{
    if (!value.is_structured()) {
        return value.is_string() ? value.get<std::string>() : value.dump();
    }
    Words words;
    for (const auto &member : value) {
        if (!member.is_null()) {
            words.push_back(bareText(member));
        }
    }
    return joined(words, " ");
}

/// Prints one value, and reads only that from the mouse.
class GetCommand : public MouseCommand {
public:
    GetCommand()
        : MouseCommand({"get", "Print one setting, for scripts",
                        "The mouse is asked for no more than is printed.", true},
                       Need::none)
    {
    }

    void declare(CLI::App &parser) override
    {
        parser.require_subcommand(0, 1);
        for (const auto &[name, summary] : kinds) {
            auto *verb = declareVerb(parser, name, summary);
            if (name == "light") {
                declareWord(*verb, "ZONE", m_name, "The zone, such as logo");
            } else if (name == "button") {
                declareWord(*verb, "BUTTON", m_name, "The button, such as dpi-up");
            }
            verb->final_callback([this, kind = name] { m_kind = kind; });
        }
    }

protected:
    std::optional<Failure> objection(Mouse *mouse) override
    {
        const auto words = Vocabulary::of(mouse->device());
        const auto &capabilities = mouse->device().capabilities();
        std::string what;
        if (m_kind == "light" && !findWord(m_name, words.zones)) {
            what = noSuchWord(words.owner, "zone", m_name, wordsOf(words.zones));
        } else if (m_kind == "button" && !findWord(m_name, words.buttons)) {
            what = noSuchWord(words.owner, "button", m_name, wordsOf(words.buttons));
        } else if (m_kind == "battery" && !capabilities.hasBattery) {
            what = words.owner + " no battery";
        } else if (m_kind == "charging" && !capabilities.reportsCharging) {
            what = words.owner + " no way to say whether it is charging";
        }
        return what.empty() ? std::nullopt : std::optional(Failure{Failure::Code::usage, what});
    }

    QCoro::Task<std::optional<Failure>> work(Mouse *mouse) override
    {
        auto &session = *mouse->session;
        const JSON value = co_await ask(mouse);
        std::optional<Failure> failure;
        if (value.is_null()) {
            const bool isThere = !isGone(mouse->device(), session.monitor());
            failure = {isThere ? Failure::Code::noAnswer : Failure::Code::unplugged,
                       "the " + mouse->device().name() + (isThere ? " did not answer" : " was unplugged")};
        } else if (session.options().json) {
            session.output().printJSON({{"schema", schema}, {"value", value}});
        } else {
            session.output().print(bareText(value) + '\n');
        }
        co_return failure;
    }

private:
    static QCoro::Task<JSON> askBattery(Mouse *mouse, bool isLevel)
    {
        auto &monitor = mouse->session->monitor();
        if (isLevel) {
            const std::optional<Data> answer =
                co_await monitor.send(command::getBatteryLevel{}, mouse->device());
            const auto level = answer ? RazerProtocol::parseBatteryLevel(*answer) : std::nullopt;
            co_return level ? JSON(*level) : JSON();
        }
        const std::optional<Data> answer =
            co_await monitor.send(command::getChargingStatus{}, mouse->device());
        co_return answer ? JSON(RazerProtocol::parseChargingStatus(*answer)) : JSON();
    }

    QCoro::Task<JSON> ask(Mouse *mouse)
    {
        if (m_kind == "battery" || m_kind == "charging") {
            co_return co_await askBattery(mouse, m_kind == "battery");
        }
        // The requested item, and its position among all settings.
        DeviceItems items;
        std::string where = "/dpi/stages";
        if (m_kind == "light") {
            const auto zone = *findWord(m_name, allCases<RGBZone>());
            items.zones.insert(zone);
            where = "/lighting/" + wordOf(zone);
        } else if (m_kind == "button") {
            const auto button = *findWord(m_name, allCases<MouseButton>());
            items.buttons.insert(button);
            where = "/buttons/" + wordOf(button);
        } else if (m_kind == "lift-off") {
            items.liftOff = true;
            where = "/liftOff";
        } else {
            items.dpiStages = true;
        }
        auto base = createDefaultState(mouse->device());
        mouse->reading = co_await readDevice(&mouse->session->monitor(), mouse->device(), base, items);
        mouse->reading.state = mouse->reading.answered();
        if (m_kind == "stage") {
            where = "/dpi/active";
        } else if (m_kind == "dpi") {
            where += '/' + std::to_string(mouse->reading.state.currentDPIStage);
        }
        const auto all = readingJSON(*mouse);
        const JSON::json_pointer value(where);
        co_return all.contains(value) ? all.at(value) : JSON();
    }

    using Kind = std::pair<std::string_view, std::string_view>;
    static constexpr std::array kinds{
        Kind{"dpi", "Print the resolution in use"},
        Kind{"stage", "Print the number of the active DPI stage"},
        Kind{"stages", "Print the resolution of each stage"},
        Kind{"light", "Print the lighting of a zone"},
        Kind{"button", "Print what a button does"},
        Kind{"lift-off", "Print the height at which the mouse stops tracking"},
        Kind{"battery", "Print the battery level in percent"},
        Kind{"charging", "Print whether the battery is charging: true or false"},
    };

    std::string_view m_kind; ///< one of the kinds
    std::string m_name;      ///< of the zone or button
};

} // namespace

constinit const CommandFactory getCommand = [] { return CommandPointer(new GetCommand); };

} // namespace kelmoth
