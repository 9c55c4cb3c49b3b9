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
    if (auto refusal = parseCommandLine(app, argc, argv)) {
        return std::visit([](auto &why) -> ParsedArguments { return std::move(why); }, *refusal);
    }
    return arguments;
}

} // namespace kelmoth
