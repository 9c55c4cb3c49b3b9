#pragma once

#include "CLI/Command.h"
#include "Core/Device/SettingWords.h"
#include "Program/CommandLine.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>

namespace CLI {
class Option;
}

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

using ParsedArguments = std::variant<Invocation, Information, Failure>;

/// Reads the arguments as `main` gets them. Options that every command takes may stand before or after it.
/// `vocabulary` is asked for the words that a help text lists.
ParsedArguments parseArguments(int argc, const char *const *argv, const Commands &commands,
                               const std::function<Vocabulary(const Options &)> &vocabulary);

/// Whether a line that makes no sense asks for JSON.
bool asksForJSON(int argc, const char *const *argv);

/// Declares a further verb of a command.
CLI::App *declareVerb(CLI::App &parser, std::string_view name, std::string_view summary);

/// Declares an operand that has to be there.
void declareWord(CLI::App &parser, const char *name, std::string &target, const char *help);

/// Declares an operand or option that is a whole number of the range, perhaps with a fraction.
CLI::Option *declareNumber(CLI::App &parser, const std::string &name, const std::function<void(double)> &take,
                           Int lowest, Int highest, const std::string &help, bool mayBeFraction = false);

} // namespace kelmoth
