#pragma once

#include "Program/CommandLine.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kelmoth {

/// The command-line arguments.
struct Arguments {
    /// Open the panel at once.
    bool show = false;
    /// End the running copy instead of starting one.
    bool quit = false;
    /// Log every diagnostic line, including those about reports.
    bool verbose = false;
    /// List of simulated models, unchecked; the real mice when absent.
    std::optional<std::string> simulate;
    /// Directory for screenshots of the panel; none to show it.
    std::optional<std::string> screenshots;
    /// The screenshots to draw, unchecked; all when empty.
    std::vector<std::string> scenes;
};

using ParsedArguments = std::variant<Arguments, Information, UsageError>;

/// Reads the arguments as `main` gets them.
ParsedArguments parseArguments(int argc, const char *const *argv);

} // namespace kelmoth
