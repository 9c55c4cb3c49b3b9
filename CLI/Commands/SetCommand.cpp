#include "CLI/Arguments.h"
#include "CLI/MouseCommand.h"
#include "CLI/Reports/ReadReport.h"
#include "Core/Device/DPIRange.h"

#include <CLI/CLI.hpp>

namespace kelmoth {

namespace {

using Objection = std::optional<std::string>;

/// One kind of change: its command line, and its call of the device manager.
class Change {
public:
    virtual ~Change() = default;

    /// Adds operands and options; they are set when the functions below are called.
    virtual void declare(CLI::App &parser) = 0;

    /// What the model does not support, with the alternatives; none when the change is valid.
    virtual Objection objection(const RazerDevice &) const { return std::nullopt; }

    /// What in the change does not fit the settings that were read from the mouse.
    virtual Objection misfit(const DeviceState &) const { return std::nullopt; }

    /// Whether the mouse did not answer for a setting that the change must preserve.
    virtual bool isBlind(const UnansweredItems &) const { return false; }

    /// Writes the change to the mouse after it has been read.
    virtual QCoro::Task<WriteResult> apply(DeviceManager *manager) = 0;

    /// The message after success: "DPI of stage 2 is now 900".
    virtual std::string outcome(const DeviceManager &manager) const = 0;

    /// Removes what has been changed from the unanswered items.
    virtual void settle(UnansweredItems &) const {}
};

/// The error of a stage, counted from 1, for a mouse with these settings.
Objection missingStage(Int stage, const DeviceState &held)
{
    const auto count = std::ssize(held.dpiStages);
    return stage <= count ? std::nullopt
                          : Objection("the mouse has " + std::to_string(count) +
                                      " DPI stages: there is no stage " + std::to_string(stage));
}

class DPIChange : public Change {
public:
    void declare(CLI::App &parser) override
    {
        const auto take = [this](double dpi) { m_dpi = static_cast<Int>(dpi); };
        declareNumber(parser, "VALUE", take, 1, 99999, "Dots per inch, in steps of 100")->required();
        declareNumber(
            parser, "--stage", [this](double stage) { m_stage = static_cast<Int>(stage); }, 1, mostDPIStages,
            "The stage, in place of the active one");
    }

    Objection objection(const RazerDevice &device) const override
    {
        const auto &capabilities = device.capabilities();
        return isValidDPI(m_dpi, capabilities)
                   ? std::nullopt
                   : Objection("the " + device.name() + " takes " + std::to_string(lowestDPI) + " to " +
                               std::to_string(capabilities.maxDPI) + " DPI in steps of " +
                               std::to_string(dpiStep) + ", not " + std::to_string(m_dpi));
    }

    Objection misfit(const DeviceState &held) const override
    {
        return missingStage(m_stage.value_or(1), held);
    }

    bool isBlind(const UnansweredItems &unanswered) const override { return unanswered.dpiStages; }

    QCoro::Task<WriteResult> apply(DeviceManager *manager) override
    {
        m_stage = m_stage.value_or(manager->deviceState().currentDPIStage + 1);
        return manager->changeDPI(m_dpi, *m_stage - 1);
    }

    std::string outcome(const DeviceManager &) const override
    {
        return "DPI of stage " + std::to_string(m_stage.value_or(0)) + " is now " + std::to_string(m_dpi);
    }

private:
    Int m_dpi = 0;
    std::optional<Int> m_stage; ///< counted from 1; the active one when absent
};

class StageChange : public Change {
public:
    void declare(CLI::App &parser) override
    {
        const auto take = [this](const std::string &text) {
            const auto word = folded(text);
            m_stage = wholeNumber(text).value_or(0);
            m_step = static_cast<int>(word == "next") - static_cast<int>(word == "previous");
            if (m_step == 0 && (m_stage < 1 || m_stage > mostDPIStages)) {
                throw CLI::ValidationError("STAGE", '"' + text + "\" is not 1 to " +
                                                        std::to_string(mostDPIStages) + ", next or previous");
            }
        };
        parser
            .add_option_function<std::string>("STAGE", take,
                                              "The stage; next and previous begin again at the end")
            ->required()
            ->option_text("1.." + std::to_string(mostDPIStages) + "|next|previous REQUIRED");
    }

    Objection misfit(const DeviceState &held) const override { return missingStage(m_stage, held); }
    bool isBlind(const UnansweredItems &unanswered) const override { return unanswered.dpiStages; }

    QCoro::Task<WriteResult> apply(DeviceManager *manager) override
    {
        const auto &held = manager->deviceState();
        const auto count = std::ssize(held.dpiStages);
        if (m_step != 0 && count > 0) {
            m_stage = (held.currentDPIStage + m_step + count) % count + 1;
        }
        return manager->changeDPIStage(m_stage - 1);
    }

    std::string outcome(const DeviceManager &manager) const override
    {
        const auto &stages = manager.deviceState().dpiStages;
        return "active stage is now " + std::to_string(m_stage) + ", " +
               std::to_string(stages.at(static_cast<std::size_t>(m_stage - 1)).dpi) + " DPI";
    }

private:
    Int m_stage = 0; ///< counted from 1
    Int m_step = 0;  ///< from the active stage, in place of a number
};

class LightChange : public Change {
public:
    void declare(CLI::App &parser) override
    {
        declareWord(parser, "ZONES", m_zone, "A zone, such as logo, or all");
        parser.add_option("--effect", m_effect, "The effect, such as static")->option_text("EFFECT");
        const auto takeColor = [this](const std::string &text) {
            m_color = colorFromText(text);
            if (!m_color) {
                throw CLI::ValidationError("--color", '"' + text + "\" is not six hexadecimal digits");
            }
        };
        parser.add_option_function<std::string>("--color", takeColor, "The colour, such as ff8000")
            ->option_text("RRGGBB");
        declareNumber(
            parser, "--brightness", [this](double percent) { m_brightness = percent / 100; }, 0, 100,
            "Percent", true);
    }

    Objection objection(const RazerDevice &device) const override
    {
        const auto words = Vocabulary::of(device);
        if (zones(words.zones).empty()) {
            auto allowed = wordsOf(words.zones);
            allowed.emplace_back("all");
            return noSuchWord(words.owner, "zone", m_zone, allowed);
        }
        if (m_effect && !findWord(*m_effect, words.effects)) {
            return noSuchWord(words.owner, "effect", *m_effect, wordsOf(words.effects));
        }
        return m_effect || m_color || m_brightness
                   ? std::nullopt
                   : Objection("say what to change of the light: --effect, --color or --brightness");
    }

    bool isBlind(const UnansweredItems &unanswered) const override
    {
        const auto wanted = zones(unanswered.zones);
        return !wanted.empty() && !(m_effect && m_color && m_brightness);
    }

    QCoro::Task<WriteResult> apply(DeviceManager *manager) override
    {
        m_changed = zones(manager->connectedDevice()->capabilities().rgbZones);
        WriteResult result;
        for (const auto zone : m_changed) {
            const auto &held = manager->deviceState().rgbSettings;
            auto setting = held.contains(zone) ? held.at(zone) : RGBSetting{};
            setting.effect = m_effect ? *findWord(*m_effect, allCases<RGBEffect>()) : setting.effect;
            setting.color = m_color.value_or(setting.color);
            setting.brightness = m_brightness.value_or(setting.brightness);
            result = co_await manager->changeRGB(zone, setting);
            if (!result.isDone()) {
                break;
            }
        }
        co_return result;
    }

    std::string outcome(const DeviceManager &manager) const override
    {
        Words lines;
        for (const auto zone : m_changed) {
            lines.push_back("lighting of " + wordOf(zone) + " is now " +
                            lightText(manager.deviceState().rgbSettings.at(zone)));
        }
        return joined(lines, "\n");
    }

    void settle(UnansweredItems &unanswered) const override
    {
        std::ranges::for_each(m_changed, [&](auto zone) { unanswered.zones.erase(zone); });
    }

private:
    /// The selected ones among these zones.
    std::vector<RGBZone> zones(const auto &offered) const
    {
        std::vector<RGBZone> meant;
        std::ranges::copy_if(offered, std::back_inserter(meant), [this](RGBZone zone) {
            return folded(m_zone) == "all" || folded(m_zone) == folded(rawValue(zone));
        });
        return meant;
    }

    std::string m_zone;
    std::optional<std::string> m_effect;
    std::optional<RGBColor> m_color;
    std::optional<double> m_brightness; ///< as a fraction
    std::vector<RGBZone> m_changed;
};

class ButtonChange : public Change {
public:
    void declare(CLI::App &parser) override
    {
        declareWord(parser, "BUTTON", m_button, "The button, such as dpi-up");
        declareWord(parser, "ACTION", m_action, "The action, such as right-click or key:ctrl+c");
        declareNumber(
            parser, "--profile", [this](double profile) { m_profile = static_cast<Int>(profile); }, 0,
            lastProfile, "In this stored profile too; what the mouse does now is 0");
        parser.add_flag("--hypershift", m_hypershift, "While a hypershift button is held");
    }

    Objection objection(const RazerDevice &device) const override
    {
        const auto words = Vocabulary::of(device);
        const auto button = findWord(m_button, words.buttons);
        if (!button) {
            return noSuchWord(words.owner, "button", m_button, wordsOf(words.buttons));
        }
        const auto action = actionFromText(m_action, words);
        const auto *wrong = std::get_if<std::string>(&action);
        return wrong ? *wrong : obstacleTo(*button, std::get<ButtonAction>(action), words);
    }

    QCoro::Task<WriteResult> apply(DeviceManager *manager) override
    {
        const auto action = actionFromText(m_action, Vocabulary::of(*manager->connectedDevice()));
        return manager->changeButtonMapping(button(), std::get<ButtonAction>(action), m_profile,
                                            m_hypershift);
    }

    std::string outcome(const DeviceManager &manager) const override
    {
        return "button " + wordOf(button()) + (m_hypershift ? " with hypershift is now " : " is now ") +
               actionText(manager.deviceState().buttonMappings.at(button()));
    }

    void settle(UnansweredItems &unanswered) const override { unanswered.buttons.erase(button()); }

private:
    /// Call it only if `objection` has returned none.
    MouseButton button() const { return *findWord(m_button, allCases<MouseButton>()); }

    std::string m_button;
    std::string m_action;
    Int m_profile = 0;
    bool m_hypershift = false;
};

class LiftOffChange : public Change {
public:
    void declare(CLI::App &parser) override { declareWord(parser, "LEVEL", m_level, "low, medium or high"); }

    Objection objection(const RazerDevice &device) const override
    {
        return level() ? std::nullopt
                       : Objection(noSuchWord(Vocabulary::of(device).owner, "lift-off level", m_level,
                                              wordsOf(allCases<LiftOffLevel>())));
    }

    QCoro::Task<WriteResult> apply(DeviceManager *manager) override
    {
        return manager->changeLiftOff(static_cast<Int>(*level()));
    }

    std::string outcome(const DeviceManager &) const override
    {
        return "lift-off distance is now " + wordOf(*level());
    }

    void settle(UnansweredItems &unanswered) const override { unanswered.liftOff = false; }

private:
    std::optional<LiftOffLevel> level() const { return findWord(m_level, allCases<LiftOffLevel>()); }

    std::string m_level;
};

/// Changes one setting of a mouse.
class SetCommand : public MouseCommand {
public:
    SetCommand()
        : MouseCommand({"set", "Change one setting of a mouse",
                        R"(The mouse is read first, and what it took is saved. With --json all settings are
printed. Letter case, hyphens and underscores of the words make no difference.

Example:
  kelmothctl set light logo --effect static --color ff0000 --brightness 50
  kelmothctl set button back key:ctrl+z)",
                        true},
                       Need::changing)
    {
    }

    void declare(CLI::App &parser) override
    {
        parser.require_subcommand(0, 1);
        for (const auto &[name, summary, change] : m_changes) {
            auto *verb = declareVerb(parser, name, summary);
            change->declare(*verb);
            verb->final_callback([this, name, &change] {
                m_name = name;
                m_change = change.get();
            });
        }
    }

protected:
    std::optional<Failure> objection(Mouse *mouse) override
    {
        return usage(m_change->objection(mouse->device()));
    }

    QCoro::Task<std::optional<Failure>> work(Mouse *mouse) override
    {
        auto &session = *mouse->session;
        auto &manager = session.manager();
        std::optional<Failure> failure;
        if (m_change->isBlind(manager.unanswered())) {
            failure = {Failure::Code::noAnswer, "the mouse did not say what its " + std::string(m_name) +
                                                    " settings are: nothing was changed"};
            co_return failure;
        }
        failure = usage(m_change->misfit(manager.deviceState()));
        if (failure) {
            co_return failure;
        }
        const WriteResult result = co_await m_change->apply(&manager);
        const auto loss = session.flushDefaults();
        failure = mouse->failureOf(result);
        if (failure) {
            co_return failure;
        }
        if (session.options().json) {
            auto &reading = mouse->reading;
            reading.state = manager.deviceState();
            reading.liftOffLevel = manager.liftOffLevel();
            m_change->settle(reading.unanswered);
            reading.state = reading.answered();
            co_await readBattery(&mouse->listed, &session.monitor(), QDeadlineTimer(QDeadlineTimer::Forever));
            auto json = readingJSON(*mouse);
            if (loss) {
                json["error"] = errorJSON(*loss);
            }
            session.output().printJSON(json);
        } else {
            session.output().print(m_change->outcome(manager) + '\n');
        }
        co_return loss;
    }

private:
    struct Row {
        std::string_view name;
        std::string_view summary;
        std::unique_ptr<Change> change;
    };

    static std::optional<Failure> usage(const Objection &objection)
    {
        return objection ? std::optional(Failure{Failure::Code::usage, *objection}) : std::nullopt;
    }

    const std::array<Row, 5> m_changes{
        Row{"dpi", "Set the DPI of the active stage, or of another", std::make_unique<DPIChange>()},
        Row{"stage", "Make a DPI stage the active one", std::make_unique<StageChange>()},
        Row{"light", "Set the lighting of a zone, or of all", std::make_unique<LightChange>()},
        Row{"button", "Say what a button does", std::make_unique<ButtonChange>()},
        Row{"lift-off", "Set the height at which the mouse stops tracking",
            std::make_unique<LiftOffChange>()},
    };
    std::string_view m_name;
    Change *m_change = nullptr; ///< the one on the command line
};

} // namespace

constinit const CommandFactory setCommand = [] { return CommandPointer(new SetCommand); };

} // namespace kelmoth
