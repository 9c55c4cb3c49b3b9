// A settings file may hold anything, and what the program holds must come back from its file.

#include "Core/Device/DeviceState.h"
#include "Fuzz/Check.h"

#include <cstdint>
#include <fuzzer/FuzzedDataProvider.h>
#include <string>
#include <string_view>

using namespace kelmoth;
using fuzz::check;

namespace {

void checkText(std::string_view text)
{
    std::string failure;
    const auto state = decodeDeviceState(text, &failure);
    check(state.has_value() == failure.empty(), "a failure says what is wrong");
    if (state) {
        const auto stored = encode(*state);
        const auto again = decodeDeviceState(stored);
        check(again == state, "what was read is written so that it reads the same");
        check(encode(*again) == stored, "writing is stable");
    }
}

/// A value of any type that the case carries.
ButtonAction anyAction(FuzzedDataProvider &input)
{
    using Case = ButtonAction::Case;
    const auto which = static_cast<Case>(input.ConsumeIntegralInRange(0, static_cast<int>(Case::other)));
    ButtonAction::Value value;
    switch (valueType(which)) {
    case ButtonAction::ValueType::integer:
        value = input.ConsumeIntegral<Int>();
        break;
    case ButtonAction::ValueType::text: {
        // Text that is not UTF-8 cannot come back unchanged; the other half of the run brings it in.
        auto text = input.ConsumeRandomLengthString(20);
        for (char &c : text) {
            c = static_cast<char>(c & 0x7F);
        }
        value = std::move(text);
        break;
    }
    case ButtonAction::ValueType::bytes: {
        const auto count = input.ConsumeIntegralInRange<std::size_t>(0, 9);
        value = input.ConsumeBytes<std::uint8_t>(count);
        break;
    }
    case ButtonAction::ValueType::none:
        break;
    }
    return *ButtonAction::make(which, std::move(value));
}

template <RawValueEnum E> E anyOf(FuzzedDataProvider &input)
{
    return input.PickValueInArray(allCases<E>());
}

RGBColor anyColor(FuzzedDataProvider &input)
{
    return {input.ConsumeIntegral<std::uint8_t>(), input.ConsumeIntegral<std::uint8_t>(),
            input.ConsumeIntegral<std::uint8_t>()};
}

DeviceState anyState(FuzzedDataProvider &input)
{
    DeviceState state;
    for (auto count = input.ConsumeIntegralInRange(0, 7); count > 0; --count) {
        state.dpiStages.push_back(
            {input.ConsumeIntegral<Int>(), input.ConsumeIntegral<Int>(), anyOf<DPIStageColor>(input)});
    }
    state.currentDPIStage = input.ConsumeIntegral<Int>();
    state.pollingRate = input.ConsumeIntegral<Int>();
    for (auto count = input.ConsumeIntegralInRange(0, 5); count > 0; --count) {
        auto &setting = state.rgbSettings[anyOf<RGBZone>(input)];
        setting.effect = anyOf<RGBEffect>(input);
        setting.color = anyColor(input);
        if (input.ConsumeBool()) {
            setting.secondaryColor = anyColor(input);
        }
        setting.brightness = input.ConsumeFloatingPoint<double>();
        setting.speed = input.ConsumeFloatingPoint<double>();
    }
    for (auto count = input.ConsumeIntegralInRange(0, 12); count > 0; --count) {
        state.buttonMappings.insert_or_assign(anyOf<MouseButton>(input), anyAction(input));
    }
    state.hyperScrollEnabled = input.ConsumeBool();
    state.scrollWheelMode = anyOf<ScrollWheelMode>(input);
    return state;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    checkText({reinterpret_cast<const char *>(data), size});
    FuzzedDataProvider input(data, size);
    const auto state = anyState(input);
    std::string failure;
    check(decodeDeviceState(encode(state), &failure) == state, "what is written can be read");
    check(failure.empty(), "a success says nothing of a failure");
    return 0;
}
