#include "Core/Device/SettingsFile.h"

#include "Core/Device/JSONReader.h"
#include "Core/Device/LiftOffLevel.h"

namespace kelmoth {

namespace {

constexpr const char *liftOffMember = "liftOffLevel";

/// The level beside a record; none when there is no such member. Throws DecodingError.
std::optional<Int> decodeLiftOff(std::string_view text)
{
    const auto document = parseJSON(text);
    const auto member = JSONReader(document).optionalMember(liftOffMember);
    if (!member) {
        return std::nullopt;
    }
    const Int level = member->integer();
    if (!liftOffLevelOf(level)) {
        member->fail(std::to_string(level) + " is outside 0 to 2");
    }
    return level;
}

} // namespace

std::optional<std::string> encode(const SettingsFile &file)
{
    auto text = encode(file.record);
    if (text && file.liftOffLevel) {
        // The text is of our own making: it parses.
        auto json = nlohmann::ordered_json::parse(*text);
        json[liftOffMember] = *file.liftOffLevel;
        text = json.dump();
    }
    return text;
}

std::optional<SettingsFile> decodeSettingsFile(std::string_view text, std::string *failure)
{
    auto record = decodeDeviceState(text, failure);
    if (!record) {
        return std::nullopt;
    }
    try {
        return SettingsFile{*std::move(record), decodeLiftOff(text)};
    } catch (const DecodingError &error) {
        *failure = error.what();
        return std::nullopt;
    }
}

} // namespace kelmoth
