#include "CLI/Arguments.h"

#include "CLI/Words.h"
#include "Platform/Qt/QtPlatform.h"
#include "Platform/Simulated/SimulatedMouse.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <ranges>

namespace kelmoth {

namespace {

constexpr const char *description =
    "Shows what the mice of the Razer Basilisk V3 family say about themselves.";

constexpr const char *examples = R"(
Examples:
  kelmothctl list
  kelmothctl read --product 0x00aa
  kelmothctl --simulate basilisk-v3-pro-wired read

"kelmothctl COMMAND --help" says more about a command.)";

std::string indentedLines(const std::vector<std::string> &words)
{
    std::string text;
    for (const auto &word : words) {
        text += "  " + word + '\n';
    }
    return text;
}

/// "0x00aa" or "170"; none for anything that is not one 16-bit number.
std::optional<std::uint16_t> productIDFromText(const std::string &text)
{
    const bool isHex = text.starts_with("0x") || text.starts_with("0X");
    const char *begin = text.c_str() + (isHex ? 2 : 0);
    const char *end = text.c_str() + text.size();
    std::uint16_t value = 0;
    const auto result = std::from_chars(begin, end, value, isHex ? 16 : 10);
    if (result.ec != std::errc{} || result.ptr != end) {
        return std::nullopt;
    }
    return value;
}

/// The options of every command.
void declareOptions(CLI::App &app, Options &options)
{
    app.set_help_flag("-h,--help", "Show this help, or that of a command, and exit");
    app.set_version_flag("--version", "kelmothctl " + resourceMainBundle()->version(),
                         "Show the version and exit");
    app.add_flag("--json", options.json, "Print JSON, for programs");
    app.add_option("--simulate", options.simulate, "Simulated mice in place of the attached ones")
        ->option_text("MODEL[,MODEL...]");
    const auto takeProductID = [&options](const std::string &text) {
        options.productID = productIDFromText(text);
        if (!options.productID) {
            throw CLI::ValidationError("--product", "\"" + text +
                                                        "\" is not 0x0000 to 0xffff, nor one of "
                                                        "these numbers in decimal");
        }
    };
    app.add_option_function<std::string>("--product", takeProductID,
                                         "Only the mouse with this USB product ID")
        ->option_text("PID");
    app.add_flag("-v,--verbose", options.verbose, "Show diagnostic lines on standard error");
}

std::string commandNames(const Commands &commands)
{
    return joined(commands | std::views::transform([](const auto &command) { return command->name(); }));
}

UsageError missingCommand(const CLI::App &app, const Commands &commands)
{
    const auto words = app.remaining();
    const auto word = std::ranges::find_if(words, [](const auto &w) { return !w.starts_with('-'); });
    if (word == words.end()) {
        return {"no command given; the commands are " + commandNames(commands)};
    }
    return {"there is no command \"" + *word + "\"; the commands are " + commandNames(commands)};
}

} // namespace

ParsedArguments parseArguments(int argc, const char *const *argv, const Commands &commands)
{
    CLI::App app(description, "kelmothctl");
    app.footer("Models to simulate (those with a name also as NAME:bluetooth):\n" +
               indentedLines(SimulatedModel::names()) + examples);
    app.require_subcommand(0, 1);
    app.get_formatter()->column_width(26);
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");

    Invocation invocation;
    declareOptions(app, invocation.options);
    for (const auto &command : commands) {
        auto *verb = app.add_subcommand(std::string(command->name()), std::string(command->summary()));
        verb->fallthrough();
        verb->group("Commands");
        verb->footer(std::string(command->details()) +
                     "\n\n\"kelmothctl --help\" lists the options that every command takes.");
        command->declare(*verb);
    }
    // The parser reports all that is wrong by throwing; nothing of it leaves here.
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp &) {
        return Information{app.help()};
    } catch (const CLI::CallForVersion &) {
        return Information{app.version() + '\n'};
    } catch (const CLI::ExtrasError &error) {
        return app.get_subcommands().empty() ? missingCommand(app, commands) : UsageError{error.what()};
    } catch (const CLI::ParseError &error) {
        return UsageError{error.what()};
    }
    if (app.get_subcommands().empty()) {
        return missingCommand(app, commands);
    }
    const auto chosen = app.get_subcommands().front()->get_name();
    invocation.command =
        std::ranges::find(commands, std::string_view(chosen), [](const auto &c) { return c->name(); })->get();
    return invocation;
}

} // namespace kelmoth
