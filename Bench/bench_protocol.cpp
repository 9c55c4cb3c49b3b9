// What one command costs before it goes out and after its answer is there, and what the settings cost to
// store. The names begin with the kind: script/bench holds each kind to its limit.

#include "Core/Device/DeviceDefaults.h"
#include "Core/Device/DeviceState.h"
#include "Core/Device/KeyboardShortcut.h"
#include "Core/HID/RazerProtocol.h"
#include "Core/HID/SavedSettings.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace kelmoth {
namespace {

RazerDevice mouse()
{
    RazerDevice device;
    device.vendorID = razerVendorID;
    device.productID = rawValue(BasiliskProductID::basiliskV3);
    device.transport = "USB";
    return device;
}

/// A whole answer to `command` that begins with these argument bytes.
Data answer(const RazerCommand &command, std::initializer_list<std::uint8_t> arguments)
{
    auto report = RazerProtocol::createReport(command, mouse());
    report[RazerProtocol::offset::status] = 0x02;
    std::ranges::copy(arguments, report.begin() + RazerProtocol::offset::arguments);
    return report;
}

/// Registers one benchmark that calls `work` on an input that the compiler cannot see through.
template <class Input, class Work> void add(const std::string &name, Input input, Work work)
{
    benchmark::RegisterBenchmark(name.c_str(), [input = std::move(input), work](benchmark::State &state) {
        auto hidden = input;
        for ([[maybe_unused]] auto step : state) {
            benchmark::DoNotOptimize(hidden);
            benchmark::DoNotOptimize(work(hidden));
        }
    });
}

void addBuilders()
{
    const auto build = [device = mouse()](const RazerCommand &command) {
        return RazerProtocol::createReport(command, device);
    };
    const RGBSetting lit{RGBEffect::staticColor, {255, 128, 0}, {}, 0.5, 0.5};
    const auto stages = DeviceState::defaultState().dpiStages;
    const std::vector<std::pair<std::string, RazerCommand>> commands{
        {"setDPIStages", command::setDPIStages{.stages = stages, .activeStage = 2}},
        {"getDPIStages", command::getDPIStages{}},
        {"setRGB", command::setRGB{.zone = RGBZone::logo, .setting = lit}},
        {"getRGB", command::getRGB{RGBZone::logo}},
        {"setBrightness", command::setBrightness{.zone = RGBZone::logo, .brightness = 0.5}},
        {"getBrightness", command::getBrightness{RGBZone::logo}},
        {"prepareLiftOff", command::prepareLiftOff{}},
        {"setLiftOff", command::setLiftOff{1}},
        {"getLiftOff", command::getLiftOff{}},
        {"getBatteryLevel", command::getBatteryLevel{}},
        {"getChargingStatus", command::getChargingStatus{}},
        {"setButtonMapping", command::setButtonMapping{.button = MouseButton::back,
                                                       .action = ButtonAction::keyPress("ctrl+shift+f5"),
                                                       .profile = 1,
                                                       .hypershift = true}},
        {"getButtonMapping", command::getButtonMapping{.button = MouseButton::back}},
    };
    for (const auto &[name, command] : commands) {
        add("build/" + name, command, build);
    }
}

void addParsers()
{
    using namespace RazerProtocol;
    const auto stages =
        answer(command::getDPIStages{},
               {1,    2, 5,    1, 1, 0x90, 1,  0x90, 0,  0,    2, 3, 0x20, 3,  0x20, 0,  0, 3, 6,
                0x40, 6, 0x40, 0, 0, 4,    12, 0x80, 12, 0x80, 0, 0, 5,    25, 0,    25, 0, 0, 0});
    const auto effect = answer(command::getRGB{RGBZone::logo}, {1, 4, 1, 0, 0, 1, 255, 128, 0});
    const auto brightness = answer(command::getBrightness{RGBZone::logo}, {1, 4, 127});
    const auto button = answer(command::getButtonMapping{.button = MouseButton::back},
                               {0, 4, 0, 0x02, 0x02, 0x03, 0x3E, 0, 0, 0});
    add("parse/classify", stages, [request = createReport(command::getDPIStages{}, mouse())](const Data &r) {
        return classify(r, request);
    });
    add("parse/DPIStages", stages, [](const Data &r) { return parseDPIStages(r); });
    add("parse/RGB", std::pair(effect, brightness),
        [](const auto &both) { return parseRGB(both.first, both.second, {}); });
    add("parse/liftOff", answer(command::getLiftOff{}, {0, 4, 1, 1}),
        [](const Data &r) { return parseLiftOff(r); });
    add("parse/buttonMapping", button, [](const Data &r) { return parseButtonMapping(r); });
    add("parse/batteryLevel", answer(command::getBatteryLevel{}, {0, 204}),
        [](const Data &r) { return parseBatteryLevel(r); });
    add("parse/chargingStatus", answer(command::getChargingStatus{}, {0, 1}),
        [](const Data &r) { return parseChargingStatus(r); });
}

void addValues()
{
    add("shortcut/parse", std::string("Ctrl+Shift+F5"),
        [](const std::string &text) { return parseKeyboardShortcut(text); });
    add("shortcut/name", KeyboardShortcut{3, 0x3E},
        [](const KeyboardShortcut &keys) { return shortcutString(keys.modifier, keys.keyCode); });
    add("stored/encode", DeviceState::defaultState(), [](const DeviceState &state) { return encode(state); });
    add("stored/decode", encode(DeviceState::defaultState()).value(),
        [](const std::string &json) { return decodeDeviceState(json); });
    add("stored/merge", std::optional(createDefaultState(mouse())),
        [device = mouse()](const std::optional<DeviceState> &saved) {
            return mergeSavedState(saved, device);
        });
}

} // namespace
} // namespace kelmoth

int main(int argc, char **argv)
{
    kelmoth::addBuilders();
    kelmoth::addParsers();
    kelmoth::addValues();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
