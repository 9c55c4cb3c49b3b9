#include "App/Arguments.h"

#include <CLI/CLI.hpp>

namespace kelmoth {

std::variant<Arguments, Information, UsageError> parseArguments(int argc, const char *const *argv)
{
    CLI::App app("Configures the mice of the Razer Basilisk V3 family.", "kelmoth");
    app.footer(modelsToSimulate());
    Arguments arguments;
    declareCommonOptions(app, {.simulate = arguments.simulate, .verbose = arguments.verbose});
    app.add_flag("--show", arguments.show, "Open the panel at once");
    // The parser reports all that is wrong by throwing; nothing of it leaves here.
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp &) {
        return Information{app.help()};
    } catch (const CLI::CallForVersion &) {
        return Information{app.version() + '\n'};
    } catch (const CLI::ParseError &error) {
        return UsageError{error.what()};
    }
    return arguments;
}

} // namespace kelmoth
