#include "CLI/Arguments.h"

#include "CLI/Words.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>

namespace kelmoth {

namespace {

constexpr const char *description =
    "Shows and changes the settings of the mice of the Razer Basilisk V3 family.";

constexpr const char *examples = R"(
Examples:
  kelmothctl list
  kelmothctl read --product 0x00aa
  kelmothctl set dpi 1600
  kelmothctl --simulate basilisk-v3-pro-wired read

Exit status: 0 done, 1 the mouse refused or did not answer, 2 wrong arguments,
3 no mouse to configure, 4 no permission, 5 the mouse took it, but it could not be
saved.

"kelmothctl COMMAND --help" says more about a command.)";

/// "0x00aa", "170" or, as lists of USB devices have it, "00aa"; none for anything that is not one 16-bit
/// number.
std::optional<std::uint16_t> productIDFromText(const std::string &text)
{
    const bool isPrefixed = text.starts_with("0x") || text.starts_with("0X");
    const bool isHex =
        isPrefixed || (text.size() == 4 &&
                       (text.starts_with('0') || text.find_first_of("abcdefABCDEF") != std::string::npos));
    const char *begin = text.c_str() + (isPrefixed ? 2 : 0);
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
    declareCommonOptions(app, {.simulate = options.simulate, .verbose = options.verbose});
    app.add_flag("--json", options.json, "Print JSON, for programs");
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
}

/// What is wrong with a line in which no word follows `verb` that it knows; `line` is the whole.
UsageError missingWord(const CLI::App &verb, const CLI::App &line)
{
    const std::string before = &verb == &line ? "" : verb.get_name() + ' ';
    std::string known;
    for (const auto *word : verb.get_subcommands([](const auto *) { return true; })) {
        known += (known.empty() ? "" : ", ") + before + word->get_name();
    }
    const auto words = line.remaining();
    const auto word = std::ranges::find_if(words, [](const auto &w) { return !w.starts_with('-'); });
    if (word == words.end()) {
        return {"no command given; the commands are " + known};
    }
    return {"there is no command \"" + before + *word + "\"; the commands are " + known};
}

/// The verb that the line ends in: the whole while it has none.
const CLI::App &lastVerb(const CLI::App &line)
{
    const auto *verb = &line;
    while (!verb->get_subcommands().empty()) {
        verb = verb->get_subcommands().front();
    }
    return *verb;
}

/// Whether another word has to follow.
bool isUnfinished(const CLI::App &verb)
{
    return !verb.get_subcommands([](const auto *) { return true; }).empty();
}

} // namespace

ParsedArguments parseArguments(int argc, const char *const *argv, const Commands &commands)
{
    CLI::App app(description, "kelmothctl");
    app.footer(modelsToSimulate() + examples);
    app.require_subcommand(0, 1);
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
    const auto complaint = [&app](const std::string &text) {
        const auto &verb = lastVerb(app);
        return isUnfinished(verb) ? missingWord(verb, app) : UsageError{text};
    };
    if (auto refusal = parseCommandLine(app, argc, argv, complaint)) {
        return std::visit([](auto &why) -> ParsedArguments { return std::move(why); }, *refusal);
    }
    if (const auto &verb = lastVerb(app); isUnfinished(verb)) {
        return missingWord(verb, app);
    }
    const auto chosen = app.get_subcommands().front()->get_name();
    invocation.command =
        std::ranges::find(commands, std::string_view(chosen), [](const auto &c) { return c->name(); })->get();
    return invocation;
}

} // namespace kelmoth
