// Bytes that a mouse gives for a button become an action, and the action becomes bytes again.

#include "Core/Device/ButtonAction.h"
#include "Fuzz/Check.h"

#include <algorithm>

using namespace kelmoth;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const ButtonAction action(std::span(data, size));
    const auto function = action.toButtonFunction();
    check(ButtonAction(function) == action, "what was decoded is encoded so that it decodes again");

    ButtonFunction given{};
    std::copy_n(data, std::min(size, given.size()), given.begin());
    check(ButtonAction(given) == action, "bytes after the seventh mean nothing, missing ones are zero");
    if (action.which() == ButtonAction::Case::other) {
        check(function == given, "what is not understood is carried unchanged");
    } else {
        const auto meaningful = given[0] == 0 ? 1 : std::min(2 + given[1], 7);
        check(std::equal(given.begin(), given.begin() + meaningful, function.begin()),
              "what is understood keeps its class and its argument bytes");
    }
    return 0;
}
