#pragma once

#include "CLI/Command.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "Program/CommandLine.h"

namespace kelmoth {

/// What every command is told.
struct Options {
    /// Print for programs.
    bool json = false;
    /// Show diagnostic lines as they come.
    bool verbose = false;
    /// List of simulated models, unchecked; the real mice when absent.
    std::optional<std::string> simulate = std::nullopt;
    /// Only mice with this product ID; any when absent.
    std::optional<std::uint16_t> productID = std::nullopt;
};

/// A command line that makes sense: the command holds its own options.
struct Invocation {
    Options options;
    Command *command = nullptr; ///< one of those that were offered
};

using ParsedArguments = std::variant<Invocation, Information, UsageError>;

/// Reads the arguments as `main` gets them. Options that every command takes may stand before or after it.
ParsedArguments parseArguments(int argc, const char *const *argv, const Commands &commands);

} // namespace kelmoth
