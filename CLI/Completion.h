#pragma once

#include "Core/Device/Words.h"

namespace CLI {
class App;
}

namespace kelmoth {

/// The verbs that can follow a verb, in the order of the help.
std::vector<const CLI::App *> verbsOf(const CLI::App &parser);

/// The one of them with this name; null when there is none.
const CLI::App *verbOf(const CLI::App &parser, const std::string &name);

/// The words that can stand for the last of these, which is unfinished and may be empty, after those before
/// it. A word that ends in a colon or a comma goes on. None where a file or any other text belongs.
Words completions(const CLI::App &parser, const Words &words);

} // namespace kelmoth
