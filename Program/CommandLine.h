#pragma once

#include <functional>
#include <optional>
#include <string>
#include <variant>

namespace CLI {
class App;
}

namespace kelmoth {

/// A command line that asks for a text: the help, or the version.
struct Information {
    std::string text;
};

/// A command line that makes no sense, and why.
struct UsageError {
    std::string message;
};

/// What each of our programs can be told, with the same words.
struct CommonOptions {
    /// List of simulated models, unchecked; the real mice when absent.
    std::optional<std::string> &simulate;
    bool &verbose;
};

/// Declares --help, --version, --simulate and --verbose. `app` has the program's name; the targets of the
/// options outlive it.
void declareCommonOptions(CLI::App &app, const CommonOptions &options);

/// What ends a program before it begins.
using Refusal = std::variant<Information, UsageError>;

/// Reads the arguments as `main` gets them into what was declared. None when the program may go on.
/// `complaint` puts into words that there are words which nobody takes; it gets the parser's own.
std::optional<Refusal> parseCommandLine(
    CLI::App &app, int argc, const char *const *argv,
    const std::function<UsageError(const std::string &)> &complaint = [](const std::string &text) {
        return UsageError{text};
    });

/// The lines of a help that list the models to simulate.
std::string modelsToSimulate();

} // namespace kelmoth
