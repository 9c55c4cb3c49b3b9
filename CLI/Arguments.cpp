#include "CLI/Arguments.h"

#include "CLI/Completion.h"

#include <CLI/CLI.hpp>

#include <algorithm>

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

"kelmothctl help COMMAND" says more about a command.)";

/// Parses "0x00aa", "170" or, as lsusb prints it, "00aa"; none for anything but a 16-bit number.
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

/// The innermost verb of the line; `app` without one.
const CLI::App &lastVerb(const CLI::App &line)
{
    const auto *verb = &line;
    while (!verb->get_subcommands().empty()) {
        verb = verb->get_subcommands().front();
    }
    return *verb;
}

/// "kelmothctl set light"
std::string nameOf(const CLI::App &verb)
{
    return (verb.get_parent() ? nameOf(*verb.get_parent()) + ' ' : "") + verb.get_name();
}

Failure usage(const std::string &message, const CLI::App &verb)
{
    return {Failure::Code::usage, message, "Try \"" + nameOf(verb) + " --help\"."};
}

/// The error for a line in which no known word follows `verb`.
Failure missingWord(const CLI::App &verb, const std::vector<std::string> &words)
{
    Words known;
    for (const auto *word : verbsOf(verb)) {
        known.push_back(word->get_name());
    }
    const auto word = std::ranges::find_if(words, [](const auto &w) { return !w.starts_with('-'); });
    if (word == words.end()) {
        return usage("no command given; the commands of " + nameOf(verb) + " are " + joined(known), verb);
    }
    return usage(noSuchWord(nameOf(verb) + " has", "command", *word, known), verb);
}

/// Lines for a help text: all words for settings.
std::string listOf(const Vocabulary &vocabulary)
{
    return "Zones:   " + joined(wordsOf(vocabulary.zones)) +
           "\nEffects: " + joined(wordsOf(vocabulary.effects)) +
           "\nButtons: " + joined(wordsOf(vocabulary.buttons)) +
           "\nActions: " + joined(vocabulary.actions()) + '\n';
}

/// The help of the verb that the words name.
ParsedArguments helpOf(const CLI::App &app, const Words &words)
{
    const auto *verb = &app;
    for (const auto &word : words) {
        const auto *next = verbOf(*verb, word);
        if (!next) {
            return missingWord(*verb, {word});
        }
        verb = next;
    }
    return Information{verb->help(verb->get_parent() ? nameOf(*verb->get_parent()) : "")};
}

} // namespace

ParsedArguments parseArguments(int argc, const char *const *argv, const Commands &commands,
                               const std::function<Vocabulary(const Options &)> &vocabulary)
{
    CLI::App app(description, "kelmothctl");
    app.require_subcommand(0, 1);
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");

    Invocation invocation;
    declareOptions(app, invocation.options);
    for (const auto &command : commands) {
        const auto &text = command->text();
        auto *verb = declareVerb(app, text.name, text.summary);
        verb->footer([&] { // inherited by the verbs of a command
            return (text.hasVocabulary ? listOf(vocabulary(invocation.options)) + '\n' : "") +
                   std::string(text.details) +
                   "\n\n\"kelmothctl --help\" lists the options that every command takes.";
        });
        command->declare(*verb);
    }
    Words topic;
    const auto *help = declareVerb(app, "help", "Show this help, or that of a command");
    app.get_subcommand("help")->add_option("COMMAND", topic, "The command, such as set")->option_text("...");

    app.footer(modelsToSimulate() + examples); // last: verbs inherit it

    const Words words(argv + std::min(argc, 1), argv + argc);
    if (!words.empty() && words.front() == "complete") { // for shells: completes the words that follow
        const auto found = completions(app, {words.begin() + 1, words.end()});
        return Information{found.empty() ? "" : joined(found, "\n") + '\n'};
    }
    std::optional<Failure> missing;
    const auto complaint = [&](const std::string &text) {
        const auto &verb = lastVerb(app);
        missing = verbsOf(verb).empty() ? usage(text, verb) : missingWord(verb, app.remaining());
        return UsageError{text};
    };
    if (auto refusal = parseCommandLine(app, argc, argv, complaint)) {
        if (auto *information = std::get_if<Information>(&*refusal)) {
            return std::move(*information);
        }
        return missing ? *missing : usage(std::get<UsageError>(*refusal).message, lastVerb(app));
    }
    if (help->parsed()) {
        return helpOf(app, topic);
    }
    if (const auto &verb = lastVerb(app); !verbsOf(verb).empty()) {
        return missingWord(verb, app.remaining());
    }
    const auto chosen = app.get_subcommands().front()->get_name();
    const auto command = std::ranges::find(commands, chosen, [](const auto &c) { return c->text().name; });
    invocation.command = command->get();
    return invocation;
}

bool asksForJSON(int argc, const char *const *argv)
{
    return std::find(argv, argv + argc, std::string_view("--json")) != argv + argc;
}

CLI::App *declareVerb(CLI::App &parser, std::string_view name, std::string_view summary)
{
    auto *verb = parser.add_subcommand(std::string(name), std::string(summary));
    verb->fallthrough()->ignore_case()->ignore_underscore()->group(parser.get_parent() ? "Settings"
                                                                                       : "Commands");
    verb->footer([&parser] { return parser.get_footer(); });
    if (const auto plain = folded(name); plain != name) {
        verb->alias(plain);
    }
    return verb;
}

void declareWord(CLI::App &parser, const char *name, std::string &target, const char *help)
{
    parser.add_option(name, target, help)->required()->option_text("REQUIRED");
}

CLI::Option *declareNumber(CLI::App &parser, const std::string &name, const std::function<void(double)> &take,
                           Int lowest, Int highest, const std::string &help, bool mayBeFraction)
{
    const auto check = [=](const std::string &text) {
        const auto number = wholeNumber<double>(text);
        const bool isWhole = wholeNumber(text).has_value();
        const bool isInRange =
            number && *number >= static_cast<double>(lowest) && *number <= static_cast<double>(highest);
        if (!isInRange || !(isWhole || mayBeFraction)) {
            throw CLI::ValidationError(name, '"' + text + "\" is not " + std::to_string(lowest) + " to " +
                                                 std::to_string(highest));
        }
        take(*number);
    };
    return parser.add_option_function<std::string>(name, check, help)
        ->option_text(std::to_string(lowest) + ".." + std::to_string(highest));
}

} // namespace kelmoth
