#include "Program/CommandLine.h"

#include "Platform/Qt/QtPlatform.h"
#include "Platform/Simulated/SimulatedMouse.h"

#include <CLI/CLI.hpp>

namespace kelmoth {

void declareCommonOptions(CLI::App &app, const CommonOptions &options)
{
    app.set_help_flag("-h,--help", "Show this help, or that of a command, and exit");
    app.set_version_flag("-V,--version", app.get_name() + ' ' + resourceMainBundle()->version(),
                         "Show the version and exit");
    app.add_option("--simulate", options.simulate, "Simulated mice in place of the attached ones")
        ->option_text("MODEL[,MODEL...]");
    app.add_flag("-v,--verbose", options.verbose, "Show diagnostic lines on standard error");
    app.get_formatter()->column_width(26);
}

std::optional<Refusal> parseCommandLine(CLI::App &app, int argc, const char *const *argv,
                                        const std::function<UsageError(const std::string &)> &complaint)
{
    // The parser reports all that is wrong by throwing; nothing of it leaves here.
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp &) {
        return Information{app.help()};
    } catch (const CLI::CallForVersion &) {
        return Information{app.version() + '\n'};
    } catch (const CLI::ExtrasError &error) {
        return complaint(error.what());
    } catch (const CLI::ParseError &error) {
        return UsageError{error.what()};
    }
    return std::nullopt;
}

std::string modelsToSimulate()
{
    std::string text = "Models to simulate (those with a name also as NAME:bluetooth):\n";
    for (const auto &name : SimulatedModel::names()) {
        text += "  " + name + '\n';
    }
    return text;
}

} // namespace kelmoth
