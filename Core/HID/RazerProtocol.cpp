#include "Core/HID/RazerProtocol.h"

#include "Core/Device/DPIRange.h"
#include "Core/Device/LiftOffLevel.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kelmoth::RazerProtocol {

namespace {

constexpr std::uint8_t commonTransactionID = 0x1F;
constexpr std::size_t stageSize = 7; ///< bytes of one stage in the DPI-stage commands
constexpr std::size_t firstStage = 11;
constexpr std::uint8_t readBit = 0x80; ///< of the command id

/// Byte 8 of the lighting and DPI commands.
constexpr std::uint8_t firstArgument = 0x01;

/// Bytes 8 and 9 of the lift-off commands, and byte 10 of a report with a level in byte 11.
constexpr std::array<std::uint8_t, 2> liftOffArguments{0x00, 0x04};
constexpr std::uint8_t levelFollows = 0x01;

std::uint8_t dpiTransactionID(const RazerDevice &device)
{
    const auto model = device.model();
    return model ? basiliskModel(*model).dpiTransactionID : commonTransactionID;
}

/// A zeroed frame with its header, without arguments and CRC.
Data frame(CommandCode code, std::uint8_t transactionID = commonTransactionID)
{
    Data report(reportSize, 0);
    report[offset::transactionID] = transactionID;
    report[offset::dataSize] = code.dataSize;
    report[offset::commandClass] = code.commandClass;
    report[offset::commandID] = code.commandID;
    return report;
}

/// The report with its CRC.
Data sealed(Data report)
{
    report[offset::crc] = crc(report);
    return report;
}

/// A complete frame whose arguments begin with these bytes.
template <std::size_t N>
Data withArguments(CommandCode code, const std::array<std::uint8_t, N> &arguments,
                   std::uint8_t transactionID = commonTransactionID)
{
    auto report = frame(code, transactionID);
    std::ranges::copy(arguments, report.begin() + offset::arguments);
    return sealed(std::move(report));
}

std::uint8_t profileByte(Int profile)
{
    return static_cast<std::uint8_t>(std::clamp<Int>(profile, 0, lastProfile));
}

/// Bytes 10 to 13 of a lighting effect, and whether the colour follows in 14 to 16.
struct EffectLayout {
    std::array<std::uint8_t, 4> bytes;
    bool hasColor;
};

/// By RGBEffect. Starlight is sent as breathing is, ripple as breathing without a colour.
constexpr std::array effectLayouts{
    EffectLayout{{0x00, 0x00, 0x00, 0x00}, false}, // off
    EffectLayout{{0x01, 0x00, 0x00, 0x01}, true},  // staticColor
    EffectLayout{{0x02, 0x01, 0x00, 0x01}, true},  // breathing
    EffectLayout{{0x03, 0x00, 0x00, 0x00}, false}, // spectrum
    EffectLayout{{0x04, 0x01, 0x28, 0x00}, false}, // wave
    EffectLayout{{0x05, 0x00, 0x02, 0x01}, true},  // reactive
    EffectLayout{{0x02, 0x01, 0x00, 0x01}, true},  // starlight
    EffectLayout{{0x02, 0x00, 0x00, 0x00}, false}, // ripple
};
constexpr std::uint8_t coloredEffectSize = 0x09;
constexpr std::uint8_t knownEffectCodes = 6; ///< those that are read: off to reactive

/// By RGBZone.
constexpr std::array<std::uint8_t, 4> ledIDs{0x01, 0x04, 0x0A, 0x02};

/// By MouseButton.
constexpr std::array<std::uint8_t, 11> buttonIDs{0x01, 0x02, 0x03, 0x05, 0x04, 0x60,
                                                 0x6A, 0x09, 0x0A, 0x0F, 0x0E};

Data zoneReport(CommandCode code, RGBZone zone)
{
    return withArguments(code, std::array{firstArgument, ledID(zone)});
}

/// Lays out each command; the visitor of `createReport`.
struct Builder {
    const RazerDevice &device;

    Data operator()(const command::setDPIStages &command) const
    {
        return createSetDPIStagesReport(command.stages, command.activeStage, device);
    }
    Data operator()(const command::getDPIStages &) const
    {
        return withArguments(code::getDPIStages, std::array{firstArgument}, dpiTransactionID(device));
    }
    Data operator()(const command::setRGB &command) const
    {
        return createSetRGBReport(command.zone, command.setting, device);
    }
    Data operator()(const command::getRGB &command) const { return zoneReport(code::getRGB, command.zone); }
    Data operator()(const command::setBrightness &command) const
    {
        return createSetBrightnessReport(command.zone, command.brightness, device);
    }
    Data operator()(const command::getBrightness &command) const
    {
        return zoneReport(code::getBrightness, command.zone);
    }
    Data operator()(const command::prepareLiftOff &) const
    {
        return withArguments(code::prepareLiftOff, liftOffArguments);
    }
    Data operator()(const command::setLiftOff &command) const
    {
        const auto level = static_cast<std::uint8_t>(
            std::clamp<Int>(command.level, 0, static_cast<Int>(LiftOffLevel::high)));
        const auto [first, second] = liftOffArguments;
        return withArguments(code::setLiftOff, std::array{first, second, levelFollows, level});
    }
    Data operator()(const command::getLiftOff &) const
    {
        return withArguments(code::getLiftOff, liftOffArguments);
    }
    Data operator()(const command::getBatteryLevel &) const { return sealed(frame(code::getBatteryLevel)); }
    Data operator()(const command::getChargingStatus &) const
    {
        return sealed(frame(code::getChargingStatus));
    }
    Data operator()(const command::setButtonMapping &command) const
    {
        return createSetButtonMappingReport(command.button, command.action, command.profile,
                                            command.hypershift, device);
    }
    Data operator()(const command::getButtonMapping &command) const
    {
        return createGetButtonMappingReport(command.button, command.profile, command.hypershift, device);
    }
};

/// Whether the report is long enough to parse.
bool isWhole(std::span<const std::uint8_t> response)
{
    return response.size() >= reportSize;
}

} // namespace

std::uint8_t ledID(RGBZone zone)
{
    return ledIDs[static_cast<std::size_t>(zone)];
}

std::uint8_t buttonID(MouseButton button)
{
    return buttonIDs[static_cast<std::size_t>(button)];
}

std::uint8_t crc(std::span<const std::uint8_t> report)
{
    std::uint8_t sum = 0;
    for (std::size_t i = 2; i < offset::crc; ++i) {
        sum = static_cast<std::uint8_t>(sum ^ report[i]);
    }
    return sum;
}

Data createReport(const RazerCommand &command, const RazerDevice &device)
{
    return std::visit(Builder{device}, command);
}

Data createSetDPIStagesReport(std::span<const DPIStage> stages, Int activeStage, const RazerDevice &device)
{
    const auto count = std::min<Int>(std::ssize(stages), mostDPIStages);
    auto report = frame(code::setDPIStages, dpiTransactionID(device));
    report[8] = firstArgument;
    report[9] = static_cast<std::uint8_t>(count == 0 ? 1 : std::clamp<Int>(activeStage, 0, count - 1) + 1);
    report[10] = static_cast<std::uint8_t>(count);
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        const auto high = static_cast<std::uint8_t>(stages[i].dpi >> 8);
        const auto low = static_cast<std::uint8_t>(stages[i].dpi);
        const auto number = static_cast<std::uint8_t>(i + 1);
        std::ranges::copy(std::array{number, high, low, high, low},
                          report.begin() + static_cast<std::ptrdiff_t>(firstStage + stageSize * i));
    }
    return sealed(std::move(report));
}

Data createSetRGBReport(RGBZone zone, const RGBSetting &setting, const RazerDevice &)
{
    const auto &layout = effectLayouts[static_cast<std::size_t>(setting.effect)];
    auto report = frame(code::setRGB);
    report[8] = firstArgument;
    report[9] = ledID(zone);
    std::ranges::copy(layout.bytes, report.begin() + 10);
    if (layout.hasColor) {
        report[offset::dataSize] = coloredEffectSize;
        report[14] = setting.color.r;
        report[15] = setting.color.g;
        report[16] = setting.color.b;
    }
    return sealed(std::move(report));
}

std::uint8_t brightnessByte(double brightness)
{
    if (std::isnan(brightness)) {
        return 255;
    }
    return static_cast<std::uint8_t>(std::clamp(brightness * 255.0, 0.0, 255.0));
}

Data createSetBrightnessReport(RGBZone zone, double brightness, const RazerDevice &)
{
    return withArguments(code::setBrightness,
                         std::array{firstArgument, ledID(zone), brightnessByte(brightness)});
}

Data createSetButtonMappingReport(MouseButton button, const ButtonAction &action, Int profile,
                                  bool hypershift, const RazerDevice &)
{
    auto report = frame(code::setButtonMapping);
    report[8] = profileByte(profile);
    report[9] = buttonID(button);
    report[10] = hypershift ? 0x01 : 0x00;
    std::ranges::copy(action.toButtonFunction(), report.begin() + offset::buttonFunction);
    return sealed(std::move(report));
}

Data createGetButtonMappingReport(MouseButton button, Int profile, bool hypershift, const RazerDevice &)
{
    const std::uint8_t layer = hypershift ? 0x01 : 0x00;
    return withArguments(code::getButtonMapping, std::array{profileByte(profile), buttonID(button), layer});
}

ResponseStatus classify(std::span<const std::uint8_t> response, std::span<const std::uint8_t> request)
{
    if (response.size() < reportSize || request.size() <= offset::commandID ||
        response[offset::commandClass] != request[offset::commandClass] ||
        response[offset::commandID] != request[offset::commandID]) {
        return ResponseStatus::noMatch;
    }
    switch (response[offset::status]) {
    case 0x02:
        return ResponseStatus::success;
    case 0x01: // of a write; the data of a read are not ready
        return (request[offset::commandID] & readBit) ? ResponseStatus::noMatch : ResponseStatus::success;
    case 0x03:
    case 0x04:
    case 0x05:
        return ResponseStatus::rejected;
    default:
        return ResponseStatus::noMatch;
    }
}

std::optional<DPIStages> parseDPIStages(std::span<const std::uint8_t> response)
{
    if (!isWhole(response)) {
        return std::nullopt;
    }
    const std::uint8_t active = response[9];
    const std::uint8_t count = response[10];
    if (count == 0 || count > mostDPIStages || active == 0 || active > count) {
        return std::nullopt;
    }
    DPIStages stages{.active = active - 1, .dpis = {}};
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = firstStage + stageSize * i + 1;
        const Int dpi = response[at] << 8 | response[at + 1];
        if (dpi < 1) {
            return std::nullopt;
        }
        stages.dpis.push_back(dpi);
    }
    return stages;
}

std::optional<RGBSetting> parseRGB(std::span<const std::uint8_t> effect,
                                   std::span<const std::uint8_t> brightness, RGBColor fallbackColor)
{
    if (!isWhole(effect) || !isWhole(brightness) || effect[10] >= knownEffectCodes) {
        return std::nullopt;
    }
    return RGBSetting{
        .effect = static_cast<RGBEffect>(effect[10]),
        .color = effect[13] != 0 ? RGBColor{effect[14], effect[15], effect[16]} : fallbackColor,
        .secondaryColor = std::nullopt,
        .brightness = brightness[10] / 255.0,
        .speed = 0.5,
    };
}

std::optional<Int> parseLiftOff(std::span<const std::uint8_t> response)
{
    if (!isWhole(response) || response[10] != levelFollows || !liftOffLevelOf(response[11])) {
        return std::nullopt;
    }
    return response[11];
}

std::optional<ButtonAction> parseButtonMapping(std::span<const std::uint8_t> response)
{
    if (!isWhole(response)) {
        return std::nullopt;
    }
    return ButtonAction(response.subspan(offset::buttonFunction, std::tuple_size_v<ButtonFunction>));
}

std::optional<Int> parseBatteryLevel(std::span<const std::uint8_t> response)
{
    if (!isWhole(response)) {
        return std::nullopt;
    }
    return response[9] * 100 / 255;
}

bool parseChargingStatus(std::span<const std::uint8_t> response)
{
    return isWhole(response) && response[9] == 0x01;
}

std::string hexPrefix(std::span<const std::uint8_t> report)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    constexpr std::size_t shown = 16;
    std::string text;
    for (const std::uint8_t byte : report.first(std::min(report.size(), shown))) {
        text.append(text.empty() ? 0 : 1, ' ');
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

} // namespace kelmoth::RazerProtocol
