#include "CLI/ReadReport.h"

#include "CLI/SettingWords.h"
#include "CLI/Table.h"
#include "Core/Device/DeviceDefaults.h"

#include <array>
#include <cmath>

namespace kelmoth {

namespace {

using JSON = nlohmann::ordered_json;

const Table::Cell noAnswer{"no answer", Style::warning};

/// A brightness that was read, as people are shown it.
long percentOf(const RGBSetting &setting)
{
    return std::lround(setting.brightness * 100);
}

std::string zoneName(RGBZone zone)
{
    static constexpr std::array names{"Scroll Wheel", "Logo", "Underglow", "DPI Light"};
    return names[static_cast<std::size_t>(zone)];
}

Table::Cell liftOffCell(std::optional<Int> level)
{
    static constexpr std::array names{"Low", "Medium", "High"};
    if (!level || *level < 0 || *level >= std::ssize(names)) {
        return noAnswer;
    }
    return {names[static_cast<std::size_t>(*level)]};
}

std::string renderMouse(const MouseSummary &mouse, const DeviceReading &reading, const Terminal &terminal)
{
    Table table;
    table.addRow({{"Connection"}, {mouse.device.connectionLabel()}});
    if (mouse.device.capabilities().hasBattery) {
        table.addRow(
            {{"Battery"}, mouse.device.batteryLevel ? Table::Cell{batteryText(mouse.device)} : noAnswer});
    }
    table.addRow({{"Lift-off"}, liftOffCell(reading.liftOffLevel)});
    return underHeading(mouse.device.name() + " (" + productIDText(mouse.device.productID) + ")", table,
                        terminal);
}

std::string renderStages(const DeviceState &state, const Terminal &terminal)
{
    Table table;
    for (std::size_t i = 0; i < state.dpiStages.size(); ++i) {
        const bool isActive = std::cmp_equal(state.currentDPIStage, i);
        table.addRow(
            {{isActive ? "*" : " ", Style::good},
             {std::to_string(i + 1)},
             {std::to_string(state.dpiStages[i].dpi), isActive ? Style::heading : Style::plain, true},
             {isActive ? "active" : "", Style::good}});
    }
    if (state.dpiStages.empty()) {
        table.addRow({noAnswer});
    }
    return underHeading("DPI stages", table, terminal);
}

std::string renderLighting(const MouseSummary &mouse, const DeviceState &state, const Terminal &terminal)
{
    Table table;
    for (const auto zone : mouse.device.capabilities().rgbZones) {
        const auto entry = state.rgbSettings.find(zone);
        if (entry == state.rgbSettings.end()) {
            table.addRow({{zoneName(zone)}, noAnswer});
            continue;
        }
        const auto &setting = entry->second;
        const bool isColored = hasColor(setting.effect);
        table.addRow({{zoneName(zone)},
                      {std::string(rawValue(setting.effect))},
                      {isColored ? hexText(setting.color) : "", Style::plain, false,
                       isColored ? std::optional(setting.color) : std::nullopt},
                      {std::to_string(percentOf(setting)) + " %", Style::plain, true}});
    }
    return underHeading("Lighting", table, terminal);
}

std::string renderButtons(const MouseSummary &mouse, const DeviceState &state, const Terminal &terminal)
{
    Table table;
    for (const auto &[button, assigned] : defaultButtonMappings(mouse.device)) {
        const auto entry = state.buttonMappings.find(button);
        table.addRow(
            {{std::string(label(button))},
             entry == state.buttonMappings.end() ? noAnswer : Table::Cell{actionName(entry->second)}});
    }
    return underHeading("Buttons", table, terminal);
}

JSON batteryJSON(const RazerDevice &device)
{
    return device.batteryLevel ? JSON{{"level", *device.batteryLevel}, {"charging", device.isCharging}}
                               : JSON();
}

JSON stagesJSON(const MouseSummary &mouse, const DeviceReading &reading)
{
    if (reading.unanswered.dpiStages) {
        return {};
    }
    auto stages = JSON::array();
    for (const auto &stage : reading.state.dpiStages) {
        stages.push_back(stage.dpi);
    }
    return {{"active", reading.state.currentDPIStage + 1},
            {"stages", std::move(stages)},
            {"maximum", mouse.device.capabilities().maxDPI}};
}

JSON lightingJSON(const MouseSummary &mouse, const DeviceState &state)
{
    auto lighting = JSON::object();
    for (const auto zone : mouse.device.capabilities().rgbZones) {
        auto &json = lighting[std::string(rawValue(zone))];
        const auto entry = state.rgbSettings.find(zone);
        if (entry != state.rgbSettings.end()) {
            const auto &setting = entry->second;
            json["effect"] = rawValue(setting.effect);
            json["color"] = hasColor(setting.effect) ? JSON(hexText(setting.color)) : JSON();
            json["brightness"] = percentOf(setting);
        }
    }
    return lighting;
}

JSON buttonsJSON(const MouseSummary &mouse, const DeviceState &state)
{
    auto buttons = JSON::object();
    for (const auto button : buttonsOf(mouse.device)) {
        const auto entry = state.buttonMappings.find(button);
        buttons[std::string(rawValue(button))] =
            entry == state.buttonMappings.end() ? JSON() : JSON(actionText(entry->second));
    }
    return buttons;
}

/// The members of the document for which the mouse gave no answer, each by the way to it.
JSON unansweredMembers(const MouseSummary &mouse, const UnansweredItems &unanswered)
{
    auto members = JSON::array();
    if (unanswered.dpiStages) {
        members.push_back("dpi");
    }
    for (const auto zone : unanswered.zones) {
        members.push_back("lighting." + std::string(rawValue(zone)));
    }
    for (const auto button : unanswered.buttons) {
        members.push_back("buttons." + std::string(rawValue(button)));
    }
    if (unanswered.liftOff) {
        members.push_back("liftOff");
    }
    if (HIDMonitor::hasReadableBattery(mouse.device) && !mouse.device.batteryLevel) {
        members.push_back("battery");
    }
    return members;
}

} // namespace

std::string renderReading(const MouseSummary &mouse, const DeviceReading &reading, const Terminal &terminal)
{
    return renderMouse(mouse, reading, terminal) + '\n' + renderStages(reading.state, terminal) + '\n' +
           renderLighting(mouse, reading.state, terminal) + '\n' +
           renderButtons(mouse, reading.state, terminal);
}

nlohmann::ordered_json readingJSON(const MouseSummary &mouse, const DeviceReading &reading)
{
    nlohmann::ordered_json json;
    json["schema"] = 1;
    json["device"] = identityJSON(mouse);
    json["battery"] = batteryJSON(mouse.device);
    json["dpi"] = stagesJSON(mouse, reading);
    json["lighting"] = lightingJSON(mouse, reading.state);
    json["buttons"] = buttonsJSON(mouse, reading.state);
    const auto &level = reading.liftOffLevel;
    json["liftOff"] = level ? JSON(liftOffWords.at(static_cast<std::size_t>(*level))) : JSON();
    json["unanswered"] = unansweredMembers(mouse, reading.unanswered);
    return json;
}

} // namespace kelmoth
