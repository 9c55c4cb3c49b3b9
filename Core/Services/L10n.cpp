#include "Core/Services/L10n.h"

#include "Platform/Platform.h"

namespace kelmoth::L10n {

namespace {

/// A part of a format in which "%%" stands for a percent sign.
std::string percentSigns(std::string part)
{
    constexpr std::string_view sign = "%%";
    for (auto at = part.find(sign); at != std::string::npos; at = part.find(sign, at + 1)) {
        part.erase(at, 1);
    }
    return part;
}

} // namespace

std::string languageCode()
{
    const Platform &platform = Platform::current();
    const auto mode = platform.userDefaults ? platform.userDefaults->integerForKey(languageModeKey) : 0;
    if (mode == 1) {
        return "pl";
    }
    if (mode == 2 || !platform.mainBundle) {
        return "en";
    }
    const auto preferred = platform.mainBundle->preferredLocalizations();
    return !preferred.empty() && preferred.front().starts_with("pl") ? "pl" : "en";
}

std::shared_ptr<const Bundle> resourceBundle()
{
    const auto &main = Platform::current().mainBundle;
    if (!main) {
        return main;
    }
    const auto path = main->pathForResource(languageCode(), "lproj");
    if (path) {
        if (auto folder = main->bundleAtPath(*path)) {
            return folder;
        }
    }
    return main;
}

std::string text(std::string_view key)
{
    const auto bundle = resourceBundle();
    return bundle ? bundle->localizedString(key, key) : std::string(key);
}

std::string formatted(std::string_view format, std::string_view value)
{
    const auto translated = text(format);
    for (const std::string_view placeholder : {"%@", "%d", "%lld"}) {
        if (const auto at = translated.find(placeholder); at != std::string::npos) {
            return percentSigns(translated.substr(0, at))
                .append(value)
                .append(percentSigns(translated.substr(at + placeholder.size())));
        }
    }
    return percentSigns(translated);
}

} // namespace kelmoth::L10n
