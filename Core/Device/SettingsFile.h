#pragma once

#include "Core/Device/DeviceState.h"

#include <optional>
#include <string>
#include <string_view>

namespace kelmoth {

/// What a file of settings holds: the stored form, and beside its members one that other readers of that form
/// ignore, "liftOffLevel".
struct SettingsFile {
    DeviceState record;
    std::optional<Int> liftOffLevel; ///< 0 low, 1 medium, 2 high; none when the file does not say
};

/// The text of a file. None when the record has no stored form.
std::optional<std::string> encode(const SettingsFile &file);

/// Reads the text of a file. None when it is unusable; `failure` then says what is wrong and where.
std::optional<SettingsFile> decodeSettingsFile(std::string_view text, std::string *failure);

} // namespace kelmoth
