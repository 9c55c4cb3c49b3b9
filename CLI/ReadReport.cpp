#include "CLI/ReadReport.h"

#include "CLI/SettingWords.h"
#include "CLI/Table.h"
#include "Core/Device/DeviceDefaults.h"

#include <array>
#include <cmath>

namespace kelmoth {

namespace {

const Table::Cell noAnswer{"no answer", Style::warning};

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
        const auto percent = std::lround(setting.brightness * 100);
        const bool isColored = hasColor(setting.effect);
        table.addRow({{zoneName(zone)},
                      {std::string(rawValue(setting.effect))},
                      {isColored ? hexText(setting.color) : "", Style::plain, false,
                       isColored ? std::optional(setting.color) : std::nullopt},
                      {std::to_string(percent) + " %", Style::plain, true}});
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
    json["device"] = mouseJSON(mouse);
    // The text is of our own making: it parses.
    json["state"] = nlohmann::ordered_json::parse(encode(reading.state).value());
    json["liftOffLevel"] = nullptr;
    if (reading.liftOffLevel) {
        json["liftOffLevel"] = *reading.liftOffLevel;
    }
    return json;
}

} // namespace kelmoth
