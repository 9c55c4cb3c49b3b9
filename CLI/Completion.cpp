#include "CLI/Completion.h"

#include "CLI/Reports/MouseReport.h"
#include "Core/Device/DPIRange.h"
#include "Core/Device/LiftOffLevel.h"
#include "Core/Device/Lowercase.h"
#include "Core/Device/SettingWords.h"
#include "Platform/Simulated/SimulatedMouse.h"

#include <CLI/CLI.hpp>

namespace kelmoth {

namespace {

Words numbers(int lowest, int highest, const std::string &before = "")
{
    Words words;
    for (int number = lowest; number <= highest; ++number) {
        words.push_back(before + std::to_string(number));
    }
    return words;
}

/// The actions, with all their numbers.
Words actions(const Vocabulary &vocabulary)
{
    Words words;
    for (const auto &action : vocabulary.actions()) {
        const auto colon = action.find(':');
        if (action.find("..") != std::string::npos) {
            std::ranges::move(numbers(1, 5, action.substr(0, colon + 1)), std::back_inserter(words));
        } else {
            words.push_back(action.substr(0, colon == std::string::npos ? colon : colon + 1));
        }
    }
    return words;
}

/// The models to simulate, appended to an unfinished list.
Words models(std::string_view list)
{
    const auto comma = list.rfind(',');
    const std::string before(list.substr(0, comma == std::string_view::npos ? 0 : comma + 1));
    Words words;
    for (const auto &name : SimulatedModel::names()) {
        words.push_back(before + name);
        if (SimulatedModel::named(name + ":bluetooth")) {
            words.push_back(before + name + ":bluetooth");
        }
    }
    return words;
}

Words products()
{
    Words words;
    for (const auto &model : basiliskModels()) {
        words.push_back(lowercased(productIDText(rawValue(model.productID))));
    }
    return words;
}

/// The possible values of an operand or option, by its name in the help.
Words valuesOf(const std::string &name, std::string_view word)
{
    const auto vocabulary = Vocabulary::ofAll();
    const std::map<std::string, Words> table{
        {"VALUE", {"400", "800", "1600", "3200", "6400"}},
        {"STAGE", {"1", "2", "3", "4", "5", "next", "previous"}},
        {"ZONE", wordsOf(vocabulary.zones)},
        {"BUTTON", wordsOf(vocabulary.buttons)},
        {"ACTION", actions(vocabulary)},
        {"LEVEL", wordsOf(allCases<LiftOffLevel>())},
        {"PART", {"dpi", "lighting", "buttons"}},
        {"--stage", numbers(1, 5)},
        {"--effect", wordsOf(vocabulary.effects)},
        {"--brightness", {"0", "25", "50", "75", "100"}},
        {"--profile", numbers(0, 5)},
        {"--product", products()},
        {"--simulate", models(word)},
    };
    if (name == "ZONES") {
        auto zones = table.at("ZONE");
        zones.emplace_back("all");
        return zones;
    }
    const auto row = table.find(name);
    return row == table.end() ? Words{} : row->second;
}

/// The option of a verb or of its parents; null when there is none.
const CLI::Option *optionOf(const CLI::App *verb, const std::string &name)
{
    while (verb != nullptr && verb->get_option_no_throw(name) == nullptr) {
        verb = verb->get_parent();
    }
    return verb != nullptr ? verb->get_option_no_throw(name) : nullptr;
}

Words optionsOf(const CLI::App *verb)
{
    Words words;
    for (; verb; verb = verb->get_parent()) {
        for (const auto *option : verb->get_options()) {
            for (const auto &name : option->get_lnames()) {
                words.push_back("--" + name);
            }
        }
    }
    return words;
}

Words verbNames(const CLI::App &parser)
{
    const auto verbs = verbsOf(parser);
    Words words;
    std::ranges::transform(verbs, std::back_inserter(words), &CLI::App::get_name);
    return words;
}

} // namespace

std::vector<const CLI::App *> verbsOf(const CLI::App &parser)
{
    return parser.get_subcommands([](const auto *) { return true; });
}

const CLI::App *verbOf(const CLI::App &parser, const std::string &name)
{
    const auto verbs = verbsOf(parser);
    const auto verb = std::ranges::find_if(verbs, [&](const auto *each) { return each->check_name(name); });
    return verb == verbs.end() ? nullptr : *verb;
}

Words completions(const CLI::App &parser, const Words &words)
{
    const auto *verb = &parser;
    const CLI::Option *open = nullptr; // the option whose value comes next
    std::size_t position = 0;
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
        const auto &word = words[i];
        if (std::exchange(open, nullptr) != nullptr) {
            continue;
        }
        if (word.starts_with('-')) {
            const auto *option = optionOf(verb, word);
            open = option != nullptr && option->get_items_expected_max() > 0 ? option : nullptr;
        } else if (const auto *next = verbOf(*verb, word)) {
            verb = next;
        } else {
            ++position;
        }
    }
    const std::string last = words.empty() ? "" : words.back();
    const auto equals = last.find('=');
    Words found;
    std::string before;
    if (open) {
        found = valuesOf("--" + open->get_lnames().front(), last);
    } else if (last.starts_with("--") && equals != std::string::npos) {
        before = last.substr(0, equals + 1);
        found = valuesOf(last.substr(0, equals), std::string_view(last).substr(equals + 1));
    } else if (last.starts_with('-')) {
        found = optionsOf(verb);
    } else if (found = verbNames(*verb); found.empty()) {
        const auto operands =
            verb->get_options([](const CLI::Option *option) { return option->get_positional(); });
        found = position < operands.size() ? valuesOf(operands[position]->get_name(), last) : Words{};
        if (verb->get_name() == "help") {
            found = verbNames(parser);
        }
    }
    std::ranges::for_each(found, [&before](auto &word) { word.insert(0, before); });
    std::erase_if(found, [&last](const auto &word) { return !word.starts_with(last); });
    return found;
}

} // namespace kelmoth
