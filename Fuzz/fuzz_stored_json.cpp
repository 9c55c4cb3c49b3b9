// A settings file may hold anything, and what the program holds must come back from its file.

#include "Core/Device/DeviceState.h"
#include "Fuzz/Check.h"

#include <fuzzer/FuzzedDataProvider.h>

using namespace kelmoth;
using fuzz::check;

namespace {

DeviceState anyState(FuzzedDataProvider input)
{
    DeviceState state;
    const auto number = input.ConsumeIntegral<Int>();
    state.dpiStages.push_back({number, ~number, input.PickValueInArray(allCases<DPIStageColor>())});
    auto &setting = state.rgbSettings[input.PickValueInArray(allCases<RGBZone>())];
    setting.effect = input.PickValueInArray(allCases<RGBEffect>());
    setting.secondaryColor = RGBColor{input.ConsumeIntegral<std::uint8_t>()};
    setting.brightness = input.ConsumeFloatingPoint<double>();
    // Text that is not UTF-8 cannot come back unchanged; the other half of the run brings it in.
    auto text = input.ConsumeRandomLengthString(20);
    std::erase_if(text, [](char c) { return c < 0; });
    state.buttonMappings.emplace(MouseButton::left, ButtonAction::dpiChange(number));
    state.buttonMappings.emplace(MouseButton::right, ButtonAction::keyPress(text));
    state.buttonMappings.emplace(MouseButton::back,
                                 ButtonAction::other(input.ConsumeRemainingBytes<std::uint8_t>()));
    return state;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    std::string failure;
    const auto read = decodeDeviceState({reinterpret_cast<const char *>(data), size}, &failure);
    check(read.has_value() == failure.empty(), "a failure says what is wrong, a success nothing");
    for (const auto &state : {read.value_or(DeviceState()), anyState({data, size})}) {
        check(decodeDeviceState(encode(state).value()) == state, "what is written reads the same");
    }
    return 0;
}
