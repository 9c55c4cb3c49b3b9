// Bytes that a mouse gives for a button become an action, and the action becomes bytes again.

#include "Core/Device/ButtonAction.h"
#include "Core/Device/DeviceState.h"
#include "Fuzz/Check.h"

#include <algorithm>
#include <cstdint>
#include <span>

using namespace kelmoth;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::span input(data, size);
    const ButtonAction action(input);
    const auto function = action.toButtonFunction();
    check(ButtonAction(function) == action, "what was decoded is encoded so that it decodes again");

    ButtonFunction given{};
    std::ranges::copy(input.first(std::min(size, given.size())), given.begin());
    check(ButtonAction(given) == action, "bytes after the seventh mean nothing, missing ones are zero");
    check(function[0] == given[0], "the function class is kept");
    if (action.which() == ButtonAction::Case::other) {
        check(function == given, "what is not understood is carried unchanged");
    } else if (action.which() != ButtonAction::Case::disabled) {
        const std::size_t meaningful = 2U + function[1];
        check(function[1] >= 1 && meaningful <= given.size() &&
                  std::equal(function.begin(), function.begin() + static_cast<std::ptrdiff_t>(meaningful),
                             given.begin()),
              "what is understood keeps its argument bytes");
    }

    DeviceState state;
    state.buttonMappings.emplace(MouseButton::left, action);
    check(decodeDeviceState(encode(state)) == state, "an action from a mouse survives storing");
    check(!actionName(action).empty(), "every action has a name");
    return 0;
}
