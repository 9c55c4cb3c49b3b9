#pragma once

#include <optional>
#include <string>

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

/// The lines of a help that list the models to simulate.
std::string modelsToSimulate();

} // namespace kelmoth
