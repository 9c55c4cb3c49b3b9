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

/// Options of every command.
struct Options {
    /// Print JSON.
    bool json = false;
    /// Print diagnostic lines at once.
    bool verbose = false;
    /// List of simulated models, unchecked; the real mice when absent.
    std::optional<std::string> simulate = std::nullopt;
    /// Only mice with this product ID; any when absent.
    std::optional<std::uint16_t> productID = std::nullopt;
};

/// A valid command line. The command holds its own options.
struct Invocation {
    Options options;
    Command *command = nullptr; ///< one of the commands passed in
};

using ParsedArguments = std::variant<Invocation, Information, Failure>;

/// Reads the arguments as `main` gets them. Options that every command takes may stand before or after it.
/// `vocabulary` provides the words that a help text lists.
ParsedArguments parseArguments(int argc, const char *const *argv, const Commands &commands,
                               const std::function<Vocabulary(const Options &)> &vocabulary);

/// Whether an invalid command line asks for JSON.
bool asksForJSON(int argc, const char *const *argv);

/// Adds a verb to a command.
CLI::App *declareVerb(CLI::App &parser, std::string_view name, std::string_view summary);

/// Adds a required operand.
void declareWord(CLI::App &parser, const char *name, std::string &target, const char *help);

/// Adds an operand or option for a whole number in the range, or also a fraction if `mayBeFraction`.
CLI::Option *declareNumber(CLI::App &parser, const std::string &name, const std::function<void(double)> &take,
                           Int lowest, Int highest, const std::string &help, bool mayBeFraction = false);

} // namespace kelmoth
