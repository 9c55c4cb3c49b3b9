// Reports that a mouse sends: any bytes, of any length. What a parser understands must survive being sent.

#include "Core/HID/RazerProtocol.h"
#include "Fuzz/Check.h"

#include <algorithm>

using namespace kelmoth;
using namespace kelmoth::RazerProtocol;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::span response(data, size);
    const RazerDevice device{{}, razerVendorID, 0x0099, {}, {}, {}, {}};
    const bool isWhole = size >= reportSize;

    const auto request = createReport(command::getLiftOff{}, device);
    const bool isSame = isWhole && data[6] == request[6] && data[7] == request[7];
    check(isSame || classify(response, request) == ResponseStatus::noMatch, "only this command is answered");

    if (const auto stages = parseDPIStages(response)) {
        std::vector<DPIStage> sent;
        std::ranges::transform(stages->dpis, std::back_inserter(sent),
                               [](Int dpi) { return DPIStage{0, dpi, {}}; });
        check(parseDPIStages(createSetDPIStagesReport(sent, stages->active, device)) == stages, "stages");
    }
    if (auto setting = parseRGB(response, response, {})) {
        const auto effect = createSetRGBReport(RGBZone::logo, *setting, device);
        const auto brightness = createSetBrightnessReport(RGBZone::logo, setting->brightness, device);
        setting->color = effect[13] != 0 ? setting->color : RGBColor{}; // not sent with every effect
        check(parseRGB(effect, brightness, {}) == setting, "lighting");
    }
    if (const auto level = parseLiftOff(response)) {
        check(parseLiftOff(createReport(command::setLiftOff{*level}, device)) == level, "lift-off distance");
    }
    const auto action = parseButtonMapping(response);
    check(action.has_value() == isWhole, "a whole report gives an assignment");
    check(!action || parseButtonMapping(createReport(command::setButtonMapping{MouseButton::back, *action},
                                                     device)) == action,
          "assignment");
    const auto battery = parseBatteryLevel(response);
    check(battery.has_value() == isWhole && battery.value_or(0) >= 0 && battery.value_or(0) <= 100,
          "percent");
    check(isWhole || !parseChargingStatus(response), "a short report does not charge");
    return 0;
}
