#pragma once

#include <string_view>

namespace kelmoth {

/// The text of Resources/70-kelmoth.rules.
extern const std::string_view udevRule;

} // namespace kelmoth
