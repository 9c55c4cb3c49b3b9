#include "App/Arguments.h"

#include <CLI/CLI.hpp>

namespace kelmoth {

ParsedArguments parseArguments(int argc, const char *const *argv)
{
    CLI::App app("Configures the mice of the Razer Basilisk V3 family.", "kelmoth");
    app.footer(modelsToSimulate());
    Arguments arguments;
    declareCommonOptions(app, {.simulate = arguments.simulate, .verbose = arguments.verbose});
    app.add_flag("--show", arguments.show, "Open the panel at once");
    app.add_flag("--quit", arguments.quit, "End the copy that runs");
    auto *screenshots = app.add_option("--screenshots", arguments.screenshots,
                                       "Draw the panel's states into DIRECTORY, without a screen, and end")
                            ->option_text("DIRECTORY");
    app.add_option("--scene", arguments.scenes, "Draw only this of them; may be given again")
        ->option_text("NAME")
        ->needs(screenshots);
    if (auto refusal = parseCommandLine(app, argc, argv)) {
        return std::visit([](auto &why) -> ParsedArguments { return std::move(why); }, *refusal);
    }
    return arguments;
}

} // namespace kelmoth
