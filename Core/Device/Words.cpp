#include "Core/Device/Words.h"

#include "Core/Device/Lowercase.h"

#include <numeric>

namespace kelmoth {

namespace {

/// How many letters have to be put in, taken out or replaced to make one text of the other.
std::size_t distance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        auto diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < b.size(); ++j) {
            const auto replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

} // namespace

std::string joined(const Words &words, std::string_view separator)
{
    std::string text;
    for (const auto &word : words) {
        text += (text.empty() ? "" : std::string(separator)) + word;
    }
    return text;
}

std::string hyphenated(std::string_view name)
{
    std::string text(name);
    std::ranges::replace(text, '_', '-');
    return text;
}

std::string folded(std::string_view text)
{
    auto plain = lowercased(text);
    std::erase_if(plain, [](char c) { return c == '-' || c == '_'; });
    return plain;
}

std::string noSuchWord(std::string_view owner, std::string_view kind, std::string_view word,
                       const Words &allowed)
{
    constexpr std::size_t longestCompared = 64;
    std::string text = std::string(owner) + " no " + std::string(kind) + " \"" + std::string(word) + '"';
    const auto apart = [typed = folded(word.substr(0, longestCompared))](const std::string &candidate) {
        return distance(typed, folded(candidate));
    };
    const auto nearest = std::ranges::min_element(allowed, {}, apart);
    if (nearest != allowed.end() && apart(*nearest) <= 1 + nearest->size() / 4) {
        text += "; did you mean \"" + *nearest + "\"?\nAllowed are ";
    } else {
        text += "; allowed are ";
    }
    return text + joined(allowed);
}

} // namespace kelmoth
