#include "UI/Views/Texts.h"

#include <array>
#include <charconv>

namespace kelmoth {

namespace {

constexpr Int thousand = 1000;
constexpr std::size_t groupLength = 3;

} // namespace

std::string fixedDecimals(double value, int decimals)
{
    std::array<char, 400> buffer{}; // the largest number there is has 309 digits
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   std::chars_format::fixed, decimals);
    return {buffer.data(), end.ptr};
}

std::string formattedDPI(Int dpi)
{
    auto text = std::to_string(dpi);
    const std::size_t firstDigit = dpi < 0 ? 1 : 0;
    for (std::size_t at = text.size(); at > firstDigit + groupLength;) {
        at -= groupLength;
        text.insert(at, " ");
    }
    return text;
}

std::string shortDPI(Int dpi)
{
    if (dpi < thousand) {
        return std::to_string(dpi);
    }
    if (dpi % thousand == 0) {
        return std::to_string(dpi / thousand) + "K";
    }
    return fixedDecimals(static_cast<double>(dpi) / static_cast<double>(thousand), 1) + "K";
}

} // namespace kelmoth
