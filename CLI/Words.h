#pragma once

#include "Core/Device/Types.h"

#include <charconv>
#include <optional>
#include <string>
#include <string_view>

namespace kelmoth {

/// "a, b, c"
template <class Words> std::string joined(const Words &words)
{
    std::string text;
    for (const auto &word : words) {
        text += text.empty() ? "" : ", ";
        text += word;
    }
    return text;
}

/// The number that the whole text is, in decimal digits; none for any other text.
inline std::optional<Int> wholeNumber(std::string_view text)
{
    Int value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc{} && result.ptr == text.data() + text.size() ? std::optional(value)
                                                                               : std::nullopt;
}

} // namespace kelmoth
