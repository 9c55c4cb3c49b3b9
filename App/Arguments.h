#pragma once

#include "Program/CommandLine.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kelmoth {

/// What the program is told at its start.
struct Arguments {
    /// Open the panel at once.
    bool show = false;
    /// End the copy that runs instead of starting one.
    bool quit = false;
    /// Write every diagnostic line, those about the reports on the wire as well.
    bool verbose = false;
    /// List of simulated models, unchecked; the real mice when absent.
    std::optional<std::string> simulate;
    /// Where to draw pictures of the panel instead of showing it.
    std::optional<std::string> screenshots;
    /// The pictures to draw, unchecked; all when empty.
    std::vector<std::string> scenes;
};

using ParsedArguments = std::variant<Arguments, Information, UsageError>;

/// Reads the arguments as `main` gets them.
ParsedArguments parseArguments(int argc, const char *const *argv);

} // namespace kelmoth
