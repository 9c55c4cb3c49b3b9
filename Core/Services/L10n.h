#pragma once

#include "Platform/Bundle.h"

#include <memory>
#include <string>
#include <string_view>

namespace kelmoth {

/// The interface language and its texts. Keeps nothing: every call looks again. Main thread.
namespace L10n {

/// The preference that chooses the language: 1 Polish, 2 English, anything else what the system prefers.
inline constexpr std::string_view languageModeKey = "languageMode";

/// "pl" or "en".
std::string languageCode();

/// The bundle in which the texts of `languageCode()` are found: its language folder, or the main bundle
/// when there is no such folder.
std::shared_ptr<const Bundle> resourceBundle();

/// The text for an English key in the interface language; the key itself when it has no entry.
std::string text(std::string_view key);

/// The text for an English format with `value` in its first placeholder: "%@" where a string stands, "%d" or
/// "%lld" where a number does, "%%" where a percent sign does.
std::string formatted(std::string_view format, std::string_view value);

} // namespace L10n

} // namespace kelmoth
