#include "CLI/SettingChange.h"

#include "CLI/SettingWords.h"
#include "Core/Device/DPIRange.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace kelmoth {

namespace {

constexpr Int mostStages = 5;

/// Reads a whole number within a range into `target`.
template <class Target>
CLI::Option *declareNumber(CLI::App &parser, const std::string &name, Target &target, Int lowest, Int highest,
                           const std::string &help)
{
    const auto take = [&target, name, lowest, highest](const std::string &text) {
        const auto number = wholeNumber(text);
        const Int value = number.value_or(lowest - 1);
        if (value < lowest || value > highest) {
            throw CLI::ValidationError(name, '"' + text + "\" is not " + std::to_string(lowest) + " to " +
                                                 std::to_string(highest));
        }
        target = value;
    };
    return parser.add_option_function<std::string>(name, take, help)
        ->option_text(std::to_string(lowest) + ".." + std::to_string(highest));
}

/// What is wrong with a stage, counted from 1, for a mouse with these settings.
std::optional<std::string> missingStage(Int stage, const DeviceState &held)
{
    const auto count = std::ssize(held.dpiStages);
    return stage <= count ? std::nullopt
                          : std::optional("the mouse has " + std::to_string(count) +
                                          " DPI stages: there is no stage " + std::to_string(stage));
}

class DPIChange : public SettingChange {
public:
    std::string_view name() const override { return "dpi"; }
    std::string_view summary() const override { return "Set the DPI of the active stage, or of another"; }

    void declare(CLI::App &parser) override
    {
        const auto take = [this](const std::string &text) {
            const auto number = wholeNumber(text);
            if (!number) {
                throw CLI::ValidationError("VALUE", '"' + text + "\" is not a number of dots per inch");
            }
            m_dpi = *number;
        };
        parser.add_option_function<std::string>("VALUE", take, "Dots per inch, in steps of 100")
            ->required()
            ->option_text("REQUIRED");
        declareNumber(parser, "--stage", m_stage, 1, mostStages, "The stage");
    }

    std::optional<std::string> objection(const RazerDevice &device) const override
    {
        const auto &capabilities = device.capabilities();
        if (isValidDPI(m_dpi, capabilities)) {
            return std::nullopt;
        }
        return "the " + device.name() + " takes " + std::to_string(lowestDPI) + " to " +
               std::to_string(capabilities.maxDPI) + " DPI in steps of " + std::to_string(dpiStep) +
               ", not " + std::to_string(m_dpi);
    }

    std::optional<std::string> misfit(const DeviceState &held) const override
    {
        return missingStage(m_stage.value_or(1), held);
    }

    bool isBlind(const UnansweredItems &unanswered) const override { return unanswered.dpiStages; }

    QCoro::Task<bool> apply(DeviceManager &manager) override
    {
        m_stage = m_stage.value_or(manager.deviceState().currentDPIStage + 1);
        return manager.setDPI(m_dpi, *m_stage - 1);
    }

    std::string outcome(const DeviceManager &) const override
    {
        return "DPI of stage " + std::to_string(m_stage.value_or(0)) + " is now " + std::to_string(m_dpi);
    }

    void settle(UnansweredItems &) const override {}

private:
    Int m_dpi = 0;
    std::optional<Int> m_stage; ///< counted from 1; the active one when absent
};

class StageChange : public SettingChange {
public:
    std::string_view name() const override { return "stage"; }
    std::string_view summary() const override { return "Make a DPI stage the active one"; }

    void declare(CLI::App &parser) override
    {
        declareNumber(parser, "STAGE", m_stage, 1, mostStages, "The stage")->required();
    }

    std::optional<std::string> objection(const RazerDevice &) const override { return std::nullopt; }

    std::optional<std::string> misfit(const DeviceState &held) const override
    {
        return missingStage(m_stage, held);
    }

    bool isBlind(const UnansweredItems &unanswered) const override { return unanswered.dpiStages; }
    QCoro::Task<bool> apply(DeviceManager &manager) override { return manager.setDPIStage(m_stage - 1); }

    std::string outcome(const DeviceManager &manager) const override
    {
        const auto &stages = manager.deviceState().dpiStages;
        return "active stage is now " + std::to_string(m_stage) + ", " +
               std::to_string(stages.at(static_cast<std::size_t>(m_stage - 1)).dpi) + " DPI";
    }

    void settle(UnansweredItems &) const override {}

private:
    Int m_stage = 0; ///< counted from 1
};

class LightChange : public SettingChange {
public:
    std::string_view name() const override { return "light"; }
    std::string_view summary() const override { return "Set the lighting of a zone"; }

    void declare(CLI::App &parser) override
    {
        parser.add_option("ZONE", m_zone, "The zone, such as logo")->required()->option_text("REQUIRED");
        parser.add_option("--effect", m_effect, "The effect, such as static")->option_text("EFFECT");
        const auto takeColor = [this](const std::string &text) {
            m_color = colorFromText(text);
            if (!m_color) {
                throw CLI::ValidationError("--color", '"' + text + "\" is not six hexadecimal digits");
            }
        };
        parser.add_option_function<std::string>("--color", takeColor, "The colour")->option_text("RRGGBB");
        declareNumber(parser, "--brightness", m_brightness, 0, 100, "The brightness in percent");
    }

    std::optional<std::string> objection(const RazerDevice &device) const override
    {
        const auto &zones = device.capabilities().rgbZones;
        const auto &effects = device.capabilities().rgbEffects;
        const auto zone = fromRawValue<RGBZone>(m_zone);
        if (!zone || std::ranges::find(zones, *zone) == zones.end()) {
            return noSuchWord(device, "zone", m_zone, rawWords(zones));
        }
        const auto effect = m_effect ? fromRawValue<RGBEffect>(*m_effect) : std::nullopt;
        if (m_effect && (!effect || std::ranges::find(effects, *effect) == effects.end())) {
            return noSuchWord(device, "effect", *m_effect, rawWords(effects));
        }
        if (!m_effect && !m_color && !m_brightness) {
            return "say what to change of the light: --effect, --color or --brightness";
        }
        return std::nullopt;
    }

    bool isBlind(const UnansweredItems &unanswered) const override
    {
        return unanswered.zones.contains(zone()) && !(m_effect && m_color && m_brightness);
    }

    QCoro::Task<bool> apply(DeviceManager &manager) override
    {
        const auto &known = manager.deviceState().rgbSettings;
        const auto entry = known.find(zone());
        RGBSetting setting = entry == known.end() ? RGBSetting{} : entry->second;
        setting.effect = m_effect ? *fromRawValue<RGBEffect>(*m_effect) : setting.effect;
        setting.color = m_color.value_or(setting.color);
        setting.brightness = m_brightness ? static_cast<double>(*m_brightness) / 100 : setting.brightness;
        return manager.setRGB(zone(), setting);
    }

    std::string outcome(const DeviceManager &manager) const override
    {
        return "lighting of " + m_zone + " is now " + lightText(manager.deviceState().rgbSettings.at(zone()));
    }

    void settle(UnansweredItems &unanswered) const override { unanswered.zones.erase(zone()); }

private:
    /// To be called once there is no objection.
    RGBZone zone() const { return *fromRawValue<RGBZone>(m_zone); }

    std::string m_zone;
    std::optional<std::string> m_effect;
    std::optional<RGBColor> m_color;
    std::optional<Int> m_brightness; ///< percent
};

class ButtonChange : public SettingChange {
public:
    std::string_view name() const override { return "button"; }
    std::string_view summary() const override { return "Say what a button does"; }

    void declare(CLI::App &parser) override
    {
        parser.add_option("BUTTON", m_button, "The button, such as dpi_up")
            ->required()
            ->option_text("REQUIRED");
        parser.add_option("ACTION", m_action, "The action, such as rightClick or keyPress:ctrl+c")
            ->required()
            ->option_text("REQUIRED");
        declareNumber(parser, "--profile", m_profile, 0, highestProfile,
                      "In this stored profile too; what the mouse does now is 0");
        parser.add_flag("--hypershift", m_hypershift, "While a hypershift button is held");
    }

    std::optional<std::string> objection(const RazerDevice &device) const override
    {
        const auto buttons = buttonsOf(device);
        const auto button = fromRawValue<MouseButton>(m_button);
        if (!button || std::ranges::find(buttons, *button) == buttons.end()) {
            return noSuchWord(device, "button", m_button, rawWords(buttons));
        }
        std::string failure;
        const auto action = actionFromText(m_action, device, &failure);
        return action ? obstacleTo(*button, *action, device) : std::optional(failure);
    }

    bool isBlind(const UnansweredItems &) const override { return false; }

    QCoro::Task<bool> apply(DeviceManager &manager) override
    {
        std::string failure;
        const auto &device = manager.connectedDevice();
        const auto action = device ? actionFromText(m_action, *device, &failure) : std::nullopt;
        return manager.setButtonMapping(button(), action.value_or(ButtonAction::disabled()), m_profile,
                                        m_hypershift);
    }

    std::string outcome(const DeviceManager &manager) const override
    {
        return "button " + m_button + (m_hypershift ? " with hypershift is now " : " is now ") +
               actionText(manager.deviceState().buttonMappings.at(button()));
    }

    void settle(UnansweredItems &unanswered) const override { unanswered.buttons.erase(button()); }

private:
    /// To be called once there is no objection.
    MouseButton button() const { return *fromRawValue<MouseButton>(m_button); }

    std::string m_button;
    std::string m_action;
    Int m_profile = 0;
    bool m_hypershift = false;
};

class LiftOffChange : public SettingChange {
public:
    std::string_view name() const override { return "lift-off"; }
    std::string_view summary() const override { return "Set the height at which the mouse stops tracking"; }

    void declare(CLI::App &parser) override
    {
        parser.add_option("LEVEL", m_level, "low, medium or high")->required()->option_text("REQUIRED");
    }

    std::optional<std::string> objection(const RazerDevice &device) const override
    {
        return level() < std::ssize(liftOffWords)
                   ? std::nullopt
                   : std::optional(noSuchWord(device, "lift-off level", m_level, liftOffWords));
    }

    bool isBlind(const UnansweredItems &) const override { return false; }
    QCoro::Task<bool> apply(DeviceManager &manager) override { return manager.setLiftOff(level()); }
    std::string outcome(const DeviceManager &) const override
    {
        return "lift-off distance is now " + m_level;
    }
    void settle(UnansweredItems &unanswered) const override { unanswered.liftOff = false; }

private:
    /// The number of the level; beyond the last for a word that is none.
    Int level() const { return std::ranges::find(liftOffWords, m_level) - liftOffWords.begin(); }

    std::string m_level;
};

} // namespace

SettingChanges allSettingChanges()
{
    SettingChanges changes;
    changes.push_back(std::make_unique<DPIChange>());
    changes.push_back(std::make_unique<StageChange>());
    changes.push_back(std::make_unique<LightChange>());
    changes.push_back(std::make_unique<ButtonChange>());
    changes.push_back(std::make_unique<LiftOffChange>());
    return changes;
}

} // namespace kelmoth
