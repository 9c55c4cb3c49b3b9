#include "CLI/Reports/ReadReport.h"

#include "CLI/Reports/MouseReport.h"
#include "CLI/Table.h"
#include "Core/HID/RazerProtocol.h"

#include <cmath>
#include <cstdio>

namespace kelmoth {

namespace {

using JSON = nlohmann::ordered_json;

const Table::Cell noAnswer{"no answer", Style::warning};

bool isBatteryUnanswered(const RazerDevice &device)
{
    return HIDMonitor::hasReadableBattery(device) && !device.batteryLevel;
}

/// Null where it is not known.
JSON lightJSON(RGBZone zone, const DeviceState &state)
{
    const auto entry = state.rgbSettings.find(zone);
    if (entry == state.rgbSettings.end()) {
        return {};
    }
    const auto &setting = entry->second;
    const double percent = percentOf(setting.brightness);
    const auto whole = static_cast<Int>(percent);
    return {{"effect", wordOf(setting.effect)},
            {"color", hasColor(setting.effect) ? JSON(hexText(setting.color)) : JSON()},
            {"brightness", static_cast<double>(whole) == percent ? JSON(whole) : JSON(percent)}};
}

/// Null where it is not known.
JSON buttonJSON(MouseButton button, const DeviceState &state)
{
    const auto entry = state.buttonMappings.find(button);
    return entry == state.buttonMappings.end() ? JSON() : JSON(actionText(entry->second));
}

std::string renderMouse(const Mouse &mouse, const Terminal &terminal)
{
    const auto &device = mouse.device();
    Table table;
    table.addRow({{"Connection"}, {device.connectionLabel()}});
    if (device.capabilities().hasBattery) {
        table.addRow({{"Battery"}, device.batteryLevel ? Table::Cell{batteryText(device)} : noAnswer});
    }
    const auto &level = mouse.reading.liftOffLevel;
    table.addRow({{"Lift-off"}, level ? Table::Cell{liftOffWord(*level)} : noAnswer});
    return underHeading(title(device), table, terminal);
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

std::string renderLighting(const Vocabulary &vocabulary, const DeviceState &state, const Terminal &terminal)
{
    Table table;
    for (const auto zone : vocabulary.zones) {
        const auto light = lightJSON(zone, state);
        if (light.is_null()) {
            table.addRow({{wordOf(zone)}, {std::string(tableRow(zone).title)}, noAnswer});
            continue;
        }
        const bool isColored = !light["color"].is_null();
        const auto &color = state.rgbSettings.at(zone).color;
        table.addRow({{wordOf(zone)},
                      {std::string(tableRow(zone).title)},
                      {light["effect"].get<std::string>()},
                      {isColored ? hexText(color) : "", Style::plain, false,
                       isColored ? std::optional(color) : std::nullopt},
                      {light["brightness"].dump() + " %", Style::plain, true}});
    }
    return underHeading("Lighting", table, terminal);
}

std::string renderButtons(const Vocabulary &vocabulary, const DeviceState &state, const Terminal &terminal)
{
    Table table;
    for (const auto button : vocabulary.buttons) {
        const auto entry = state.buttonMappings.find(button);
        const bool isKnown = entry != state.buttonMappings.end();
        table.addRow({{wordOf(button)},
                      {std::string(label(button))},
                      isKnown ? Table::Cell{actionText(entry->second)} : noAnswer,
                      {isKnown ? actionName(entry->second) : ""}});
    }
    return underHeading("Buttons", table, terminal);
}

JSON stagesJSON(const Mouse &mouse)
{
    const auto &state = mouse.reading.state;
    if (mouse.reading.unanswered.dpiStages) {
        return {};
    }
    auto stages = JSON::array();
    for (const auto &stage : state.dpiStages) {
        stages.push_back(stage.dpi);
    }
    return {{"active", state.currentDPIStage + 1},
            {"stages", std::move(stages)},
            {"maximum", mouse.device().capabilities().maxDPI}};
}

} // namespace

std::string renderReading(const Mouse &mouse)
{
    const auto &terminal = mouse.session->terminal();
    const auto &state = mouse.reading.state;
    const auto vocabulary = Vocabulary::of(mouse.device());
    return renderMouse(mouse, terminal) + '\n' + renderStages(state, terminal) + '\n' +
           renderLighting(vocabulary, state, terminal) + '\n' + renderButtons(vocabulary, state, terminal);
}

JSON readingJSON(const Mouse &mouse)
{
    const auto &state = mouse.reading.state;
    const auto vocabulary = Vocabulary::of(mouse.device());
    auto unanswered = JSON::array();
    const auto noting = [&unanswered](const std::string &member, JSON value) {
        if (value.is_null()) {
            unanswered.push_back(member);
        }
        return value;
    };
    auto dpi = noting("dpi", stagesJSON(mouse));
    auto lighting = JSON::object();
    for (const auto zone : vocabulary.zones) {
        lighting[wordOf(zone)] = noting("lighting." + wordOf(zone), lightJSON(zone, state));
    }
    auto buttons = JSON::object();
    for (const auto button : vocabulary.buttons) {
        buttons[wordOf(button)] = noting("buttons." + wordOf(button), buttonJSON(button, state));
    }
    const auto &level = mouse.reading.liftOffLevel;
    auto liftOff = noting("liftOff", level ? JSON(liftOffWord(*level)) : JSON());
    if (isBatteryUnanswered(mouse.device())) {
        unanswered.push_back("battery");
    }
    return {{"schema", schema},
            {"device", deviceJSON(mouse.device(), mouse.listed.path)},
            {"battery", batteryJSON(mouse.device())},
            {"dpi", dpi},
            {"lighting", lighting},
            {"buttons", buttons},
            {"liftOff", liftOff},
            {"unanswered", unanswered}};
}

Words unansweredWords(const Mouse &mouse)
{
    auto words = mouse.reading.unanswered.words();
    std::ranges::transform(words, words.begin(), hyphenated);
    if (isBatteryUnanswered(mouse.device())) {
        words.emplace_back("battery");
    }
    return words;
}

double percentOf(double brightness)
{
    const auto byte = RazerProtocol::brightnessByte(brightness);
    // A byte is about 0.4 %: at least one tenth is within it.
    for (const double scale : {1.0, 10.0}) {
        const double percent = std::ceil(byte * 100.0 * scale / 255) / scale;
        if (RazerProtocol::brightnessByte(percent / 100) == byte) {
            return percent;
        }
    }
    return byte / 2.55;
}

std::string lightText(const RGBSetting &setting)
{
    const bool isFraction =
        setting.brightness >= 0 && setting.brightness <= 1; // stored values may be out of range
    std::array<char, 32> percent{};
    std::snprintf(percent.data(), percent.size(), "%.6g %%",
                  isFraction ? percentOf(setting.brightness) : setting.brightness * 100);
    return wordOf(setting.effect) + (hasColor(setting.effect) ? ' ' + hexText(setting.color) : "") + ", " +
           percent.data();
}

} // namespace kelmoth
