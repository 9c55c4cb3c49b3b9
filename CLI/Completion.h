#pragma once

#include "Core/Device/Words.h"

namespace CLI {
class App;
}

namespace kelmoth {

/// The verbs of a verb, in the order of the help.
std::vector<const CLI::App *> verbsOf(const CLI::App &parser);

/// The one with this name; null without one.
const CLI::App *verbOf(const CLI::App &parser, const std::string &name);

/// The completions of the last word, which may be empty, after the words before it. A completion that ends in
/// a colon or a comma is not finished. None where a file or any other text is expected.
Words completions(const CLI::App &parser, const Words &words);

} // namespace kelmoth
