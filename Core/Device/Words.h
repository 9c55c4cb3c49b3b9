#pragma once

#include "Core/Device/RawValues.h"
#include "Core/Device/Types.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelmoth {

/// The words of a list, as they are shown.
using Words = std::vector<std::string>;

/// "a, b, c"
std::string joined(const Words &words, std::string_view separator = ", ");

/// The number that the whole text is, in decimal digits, with a fraction where `Number` has one; none for any
/// other text.
template <class Number = Int> std::optional<Number> wholeNumber(std::string_view text)
{
    Number value{};
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc{} && result.ptr == text.data() + text.size() ? std::optional(value)
                                                                               : std::nullopt;
}

/// Lower case, with hyphens, as words stand on the command line, of a name with underscores.
std::string hyphenated(std::string_view name);

/// The text in lower case, without hyphens and underscores: what is typed is compared like this.
std::string folded(std::string_view text);

/// 'there is no zone "rim"; allowed are logo, underglow', with the nearest of them where the word may be
/// meant to be it. `owner` has none: "there is" or "the Razer Basilisk V3 has".
std::string noSuchWord(std::string_view owner, std::string_view kind, std::string_view word,
                       const Words &allowed);

/// The word for a case of a closed set.
template <RawValueEnum E> std::string wordOf(E value)
{
    return hyphenated(rawValue(value));
}

template <class Cases> Words wordsOf(const Cases &cases)
{
    Words words;
    std::ranges::transform(cases, std::back_inserter(words), [](auto value) { return wordOf(value); });
    return words;
}

/// The one of the cases that a text means; none when it means another or nothing.
template <class Cases> auto findWord(std::string_view text, const Cases &cases)
{
    const auto found = std::ranges::find(cases, folded(text), [](auto v) { return folded(rawValue(v)); });
    return found == cases.end() ? std::nullopt : std::optional(*found);
}

} // namespace kelmoth
