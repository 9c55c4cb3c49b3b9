#include "CLI/ReadReport.h"

#include "CLI/Table.h"
#include "Core/Device/DeviceDefaults.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace kelmoth {

namespace {

constexpr std::size_t indent = 2;

const Table::Cell noAnswer{"no answer", Style::warning};

std::string zoneName(RGBZone zone)
{
    static constexpr std::array names{"Scroll Wheel", "Logo", "Underglow", "DPI Light"};
    return names[static_cast<std::size_t>(zone)];
}

bool hasColor(RGBEffect effect)
{
    return effect == RGBEffect::staticColor || effect == RGBEffect::breathing ||
           effect == RGBEffect::reactive;
}

std::string hexText(RGBColor color)
{
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "#%02X%02X%02X", unsigned{color.r}, unsigned{color.g},
                  unsigned{color.b});
    return text.data();
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
    return terminal.styled(mouse.device.name() + " (" + productIDText(mouse.device.productID) + ")",
                           Style::heading) +
           '\n' + table.render(terminal, indent);
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
    return terminal.styled("DPI stages", Style::heading) + '\n' + table.render(terminal, indent);
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
    return terminal.styled("Lighting", Style::heading) + '\n' + table.render(terminal, indent);
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
    return terminal.styled("Buttons", Style::heading) + '\n' + table.render(terminal, indent);
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
    json["state"] = nlohmann::ordered_json::parse(encode(reading.state));
    json["liftOffLevel"] = nullptr;
    if (reading.liftOffLevel) {
        json["liftOffLevel"] = *reading.liftOffLevel;
    }
    return json;
}

} // namespace kelmoth
