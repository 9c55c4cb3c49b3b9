#pragma once

#include <string>

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

} // namespace kelmoth
