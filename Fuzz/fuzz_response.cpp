// Reports that a mouse sends: any bytes, of any length, in answer to any command.

#include "Core/HID/RazerProtocol.h"
#include "Fuzz/Check.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fuzzer/FuzzedDataProvider.h>
#include <variant>

using namespace kelmoth;
using fuzz::check;

namespace {

RazerCommand anyCommand(FuzzedDataProvider &input)
{
    static const std::array<RazerCommand, 13> commands{
        command::setDPIStages{.stages = {{.index = 0, .dpi = 800}}, .activeStage = 0},
        command::getDPIStages{},
        command::setRGB{.zone = RGBZone::logo, .setting = {}},
        command::getRGB{RGBZone::underglow},
        command::setBrightness{.zone = RGBZone::scrollWheel, .brightness = 0.5},
        command::getBrightness{RGBZone::dpiLight},
        command::prepareLiftOff{},
        command::setLiftOff{1},
        command::getLiftOff{},
        command::getBatteryLevel{},
        command::getChargingStatus{},
        command::setButtonMapping{.button = MouseButton::clutch, .action = ButtonAction::hypershift()},
        command::getButtonMapping{.button = MouseButton::profile},
    };
    static_assert(std::variant_size_v<RazerCommand> == commands.size(), "every command once");
    return input.PickValueInArray(commands);
}

RazerDevice anyDevice(FuzzedDataProvider &input)
{
    RazerDevice device;
    device.id = {}; // a random one would differ from run to run
    device.productID = input.ConsumeIntegralInRange<std::uint16_t>(0x0098, 0x00BB);
    return device;
}

/// Readers of answers, each checked by sending what it understood back through its builder.
void checkParsers(std::span<const std::uint8_t> response, const RazerDevice &device)
{
    using namespace RazerProtocol;
    const bool isWhole = response.size() >= reportSize;

    if (const auto stages = parseDPIStages(response)) {
        check(isWhole, "no stages from a short report");
        std::vector<DPIStage> sent;
        for (const Int dpi : stages->dpis) {
            check(dpi >= 1 && dpi <= 0xFFFF, "a DPI that the wire can carry");
            sent.push_back({.index = 0, .dpi = dpi});
        }
        const auto report = createSetDPIStagesReport(sent, stages->active, device);
        check(parseDPIStages(report) == stages, "stages survive being sent");
    }

    const RGBColor fallback{1, 2, 3};
    if (const auto setting = parseRGB(response, response, fallback)) {
        check(isWhole, "no lighting from a short report");
        check(setting->brightness >= 0.0 && setting->brightness <= 1.0, "brightness is a fraction");
        const auto effect = createSetRGBReport(RGBZone::logo, *setting, device);
        const auto brightness = createSetBrightnessReport(RGBZone::logo, setting->brightness, device);
        const bool hasColor = effect[13] != 0;
        auto expected = *setting;
        expected.color = hasColor ? setting->color : fallback;
        check(parseRGB(effect, brightness, fallback) == expected, "lighting survives being sent");
    }

    if (const auto level = parseLiftOff(response)) {
        check(isWhole, "no lift-off distance from a short report");
        check(parseLiftOff(createReport(command::setLiftOff{*level}, device)) == level,
              "the lift-off distance survives being sent");
    }

    if (const auto action = parseButtonMapping(response)) {
        check(isWhole, "no assignment from a short report");
        check(parseButtonMapping(
                  createSetButtonMappingReport(MouseButton::back, *action, 0, false, device)) == action,
              "an assignment survives being sent");
    } else {
        check(!isWhole, "a whole report gives an assignment");
    }

    const auto battery = parseBatteryLevel(response);
    check(battery.has_value() == isWhole && battery.value_or(0) >= 0 && battery.value_or(0) <= 100,
          "the battery level is a percentage");
    check(isWhole || !parseChargingStatus(response), "a short report does not charge");
    check(hexPrefix(response).size() <= std::size_t{16} * 3, "the log shows sixteen bytes at most");
}

void checkClassification(Data response, const Data &request)
{
    using namespace RazerProtocol;
    const auto status = classify(response, request);
    if (status != ResponseStatus::noMatch) {
        check(response.size() >= reportSize, "a short report answers nothing");
        check(response[offset::commandClass] == request[offset::commandClass] &&
                  response[offset::commandID] == request[offset::commandID],
              "only the command that was sent is answered");
    }
    const std::span<const std::uint8_t> cut(request.data(), offset::commandID);
    check(classify(response, cut) == ResponseStatus::noMatch, "a request without a command has no answer");

    if (response.size() >= reportSize) {
        std::ranges::copy(request.begin() + offset::commandClass, request.begin() + offset::arguments,
                          response.begin() + offset::commandClass);
        response[offset::status] = 0x02;
        check(classify(response, request) == ResponseStatus::success, "the rest of an answer is not judged");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    const auto command = anyCommand(input);
    const auto device = anyDevice(input);
    const auto request = RazerProtocol::createReport(command, device);
    check(request.size() == RazerProtocol::reportSize &&
              request[RazerProtocol::offset::crc] == RazerProtocol::crc(request),
          "every request is whole and sealed");

    // Exactly as long as what is left: a byte read beyond it is seen by the address sanitizer.
    const Data response = input.ConsumeRemainingBytes<std::uint8_t>();
    checkClassification(response, request);
    checkParsers(response, device);
    return 0;
}
