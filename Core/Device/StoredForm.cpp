// The stored form of DeviceState. Maps are flat arrays that alternate key and value, because their keys are
// enumerations; readers do not depend on the order of the entries.

#include "Core/Device/DeviceState.h"
#include "Core/Device/JSONReader.h"

#include <algorithm>
#include <cmath>
#include <variant>

namespace kelmoth {

namespace {

using Json = nlohmann::ordered_json;

Json encoded(const DPIStage &stage)
{
    return {{"index", stage.index}, {"dpi", stage.dpi}, {"color", rawValue(stage.color)}};
}

Json encoded(const RGBColor &color)
{
    return {{"r", color.r}, {"g", color.g}, {"b", color.b}};
}

Json encoded(const RGBSetting &setting)
{
    Json object{{"effect", rawValue(setting.effect)}, {"color", encoded(setting.color)}};
    if (setting.secondaryColor) {
        object["secondaryColor"] = encoded(*setting.secondaryColor);
    }
    object["brightness"] = setting.brightness;
    object["speed"] = setting.speed;
    return object;
}

bool isFinite(const RGBSetting &setting)
{
    return std::isfinite(setting.brightness) && std::isfinite(setting.speed);
}

/// One member named after the case; a case's value is the member "_0" inside.
Json encoded(const ButtonAction &action)
{
    Json value = Json::object();
    std::visit(
        [&value](const auto &held) {
            if constexpr (!std::is_same_v<std::decay_t<decltype(held)>, std::monostate>) {
                value["_0"] = held;
            }
        },
        action.value());
    Json object = Json::object();
    object[std::string(storedName(action.which()))] = std::move(value);
    return object;
}

template <class Map> Json encodedMap(const Map &map)
{
    auto array = Json::array();
    for (const auto &[key, value] : map) {
        array.push_back(rawValue(key));
        array.push_back(encoded(value));
    }
    return array;
}

void decode(const JSONReader &reader, DPIStage &stage)
{
    stage.index = reader.member("index").integer();
    stage.dpi = reader.member("dpi").integer();
    stage.color = reader.member("color").enumeration<DPIStageColor>();
}

void decode(const JSONReader &reader, RGBColor &color)
{
    color.r = reader.member("r").byte();
    color.g = reader.member("g").byte();
    color.b = reader.member("b").byte();
}

void decode(const JSONReader &reader, RGBSetting &setting)
{
    setting.effect = reader.member("effect").enumeration<RGBEffect>();
    decode(reader.member("color"), setting.color);
    if (const auto second = reader.optionalMember("secondaryColor")) {
        decode(*second, setting.secondaryColor.emplace());
    }
    setting.brightness = reader.member("brightness").number();
    setting.speed = reader.member("speed").number();
}

ButtonAction::Value decodeActionValue(const JSONReader &reader, ButtonAction::ValueType type)
{
    switch (type) {
    case ButtonAction::ValueType::integer:
        return reader.member("_0").integer();
    case ButtonAction::ValueType::text:
        return reader.member("_0").text();
    case ButtonAction::ValueType::bytes: {
        const auto array = reader.member("_0");
        Data bytes(array.count());
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            bytes[i] = array.element(i).byte();
        }
        return bytes;
    }
    case ButtonAction::ValueType::none:
        reader.object();
        break;
    }
    return {};
}

void decode(const JSONReader &reader, ButtonAction &action)
{
    std::optional<ButtonAction::Case> which;
    std::size_t found = 0;
    for (const auto &[name, value] : reader.object()) {
        if (const auto named = caseOfStoredName(name)) {
            which = named;
            ++found;
        }
    }
    if (found != 1) {
        reader.fail("Invalid number of keys found, expected one.");
    }
    auto value = decodeActionValue(reader.member(storedName(*which)), valueType(*which));
    action = *ButtonAction::make(*which, std::move(value));
}

template <class Key, class Value>
void decodeMap(const JSONReader &reader, std::map<Key, Value> &map, const Value &blank)
{
    const auto count = reader.count();
    if (count % 2 != 0) {
        reader.fail("keys and values must come in pairs");
    }
    for (std::size_t i = 0; i < count; i += 2) {
        const Key key = reader.element(i).template enumeration<Key>();
        Value value = blank;
        decode(reader.element(i + 1), value);
        map.insert_or_assign(key, std::move(value));
    }
}

DeviceState decodeRecord(const JSONReader &record)
{
    DeviceState state;
    const auto stages = record.member("dpiStages");
    state.dpiStages.resize(stages.count());
    for (std::size_t i = 0; i < state.dpiStages.size(); ++i) {
        decode(stages.element(i), state.dpiStages[i]);
    }
    state.currentDPIStage = record.member("currentDPIStage").integer();
    state.pollingRate = record.member("pollingRate").integer();
    decodeMap(record.member("rgbSettings"), state.rgbSettings, RGBSetting{});
    decodeMap(record.member("buttonMappings"), state.buttonMappings, ButtonAction::disabled());
    state.hyperScrollEnabled = record.member("hyperScrollEnabled").boolean();
    state.scrollWheelMode = record.member("scrollWheelMode").enumeration<ScrollWheelMode>();
    return state;
}

} // namespace

std::optional<std::string> encode(const DeviceState &state)
{
    if (!std::ranges::all_of(state.rgbSettings, isFinite, [](const auto &entry) { return entry.second; })) {
        return std::nullopt;
    }
    auto stages = Json::array();
    for (const auto &stage : state.dpiStages) {
        stages.push_back(encoded(stage));
    }
    const Json record{
        {"dpiStages", std::move(stages)},
        {"currentDPIStage", state.currentDPIStage},
        {"pollingRate", state.pollingRate},
        {"rgbSettings", encodedMap(state.rgbSettings)},
        {"buttonMappings", encodedMap(state.buttonMappings)},
        {"hyperScrollEnabled", state.hyperScrollEnabled},
        {"scrollWheelMode", rawValue(state.scrollWheelMode)},
    };
    return record.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::optional<DeviceState> decodeDeviceState(std::string_view json, std::string *failure)
{
    try {
        const auto document = parseJSON(json);
        return decodeRecord(JSONReader(document));
    } catch (const DecodingError &error) {
        if (failure) {
            *failure = error.what();
        }
        return std::nullopt;
    }
}

} // namespace kelmoth
