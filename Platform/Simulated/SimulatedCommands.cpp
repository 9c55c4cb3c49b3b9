#include "Platform/Simulated/SimulatedFirmware.h"

#include <algorithm>
#include <array>
#include <span>

namespace kelmoth {

namespace {

namespace offset = RazerProtocol::offset;

constexpr int minDPI = 100;
constexpr std::size_t maxStages = 5;
constexpr std::size_t firstStage = 11; ///< offset of the first stage's seven bytes
constexpr std::size_t stageSize = 7;
constexpr std::uint8_t liftOffSecond = 0x04; ///< byte 9 of the lift-off commands
constexpr std::uint8_t maxLiftOff = 2;

/// Byte 9 of a lighting command, by RGBZone.
constexpr std::array<std::uint8_t, 4> lightNumbers{0x01, 0x04, 0x0A, 0x02};

/// Byte 9 of a button command, by MouseButton.
constexpr std::array<std::uint8_t, 11> buttonNumbers{0x01, 0x02, 0x03, 0x05, 0x04, 0x60,
                                                     0x6A, 0x09, 0x0A, 0x0F, 0x0E};

/// Bytes 10 to 13 of an effect report and its data size: 9 when the colour follows in bytes 14 to 16.
struct EffectForm {
    std::uint8_t dataSize;
    std::array<std::uint8_t, 4> bytes;
};
constexpr std::array effectForms{
    EffectForm{0x06, {0x00, 0x00, 0x00, 0x00}}, // off
    EffectForm{0x09, {0x01, 0x00, 0x00, 0x01}}, // one colour
    EffectForm{0x09, {0x02, 0x01, 0x00, 0x01}}, // breathing, starlight
    EffectForm{0x06, {0x02, 0x00, 0x00, 0x00}}, // ripple
    EffectForm{0x06, {0x03, 0x00, 0x00, 0x00}}, // spectrum
    EffectForm{0x06, {0x04, 0x01, 0x28, 0x00}}, // wave
    EffectForm{0x09, {0x05, 0x00, 0x02, 0x01}}, // reactive
};

} // namespace

// DPI stages: byte 8 is 1, byte 9 the active stage, byte 10 the count, then seven bytes a stage.

SimulatedFirmware::Status SimulatedFirmware::setDPIStages(Report &report)
{
    const std::size_t active = report[9];
    const std::size_t count = report[10];
    if (report[8] != 0x01 || count < 1 || count > maxStages || active < 1 || active > count) {
        return Status::refused;
    }
    std::vector<std::uint16_t> stages;
    for (std::size_t i = 0; i < count; ++i) {
        const auto stage = std::span{report}.subspan(firstStage + stageSize * i, stageSize);
        const int x = stage[1] << 8 | stage[2];
        const int y = stage[3] << 8 | stage[4];
        // The state keeps one resolution for both axes, which is all that the program ever sets.
        if (stage[0] != i + 1 || x != y || x < minDPI || x > m_capabilities.maxDPI || stage[5] != 0 ||
            stage[6] != 0) {
            return Status::refused;
        }
        stages.push_back(static_cast<std::uint16_t>(x));
    }
    if (!restIsZero(report, firstStage + stageSize * count)) {
        return Status::refused;
    }
    m_state.dpiStages = std::move(stages);
    m_state.activeStage = report[9];
    return Status::accepted;
}

SimulatedFirmware::Status SimulatedFirmware::getDPIStages(Report &report)
{
    if (report[8] != 0x01 || !restIsZero(report, 9)) {
        return Status::refused;
    }
    report[9] = m_state.activeStage;
    report[10] = static_cast<std::uint8_t>(m_state.dpiStages.size());
    for (std::size_t i = 0; i < std::min(m_state.dpiStages.size(), maxStages); ++i) {
        const auto stage = std::span{report}.subspan(firstStage + stageSize * i, stageSize);
        stage[0] = static_cast<std::uint8_t>(i + 1);
        stage[1] = stage[3] = static_cast<std::uint8_t>(m_state.dpiStages[i] >> 8);
        stage[2] = stage[4] = static_cast<std::uint8_t>(m_state.dpiStages[i] & 0xFF);
    }
    return Status::accepted;
}

// Lighting: byte 8 is 1, byte 9 the light, byte 10 the effect or the brightness.

SimulatedMouse::State::Light *SimulatedFirmware::light(const Report &report)
{
    const auto found = std::ranges::find_if(m_state.lights, [&](const auto &entry) {
        return lightNumbers.at(static_cast<std::size_t>(entry.first)) == report[9];
    });
    return report[8] == 0x01 && found != m_state.lights.end() ? &found->second : nullptr;
}

SimulatedFirmware::Status SimulatedFirmware::setRGB(Report &report)
{
    auto *target = light(report);
    const bool isKnown = std::ranges::any_of(effectForms, [&](const EffectForm &form) {
        return form.dataSize == report[offset::dataSize] &&
               std::ranges::equal(form.bytes, std::span{report}.subspan(10, form.bytes.size()));
    });
    if (target == nullptr || !isKnown) {
        return Status::refused;
    }
    target->effect = report[10];
    std::ranges::copy(std::span{report}.subspan(11, target->parameters.size()), target->parameters.begin());
    return Status::accepted;
}

SimulatedFirmware::Status SimulatedFirmware::getRGB(Report &report)
{
    const auto *source = light(report);
    if (source == nullptr || !restIsZero(report, 10)) {
        return Status::refused;
    }
    report[10] = source->effect;
    std::ranges::copy(source->parameters, report.begin() + 11);
    return Status::accepted;
}

SimulatedFirmware::Status SimulatedFirmware::setBrightness(Report &report)
{
    auto *target = light(report);
    if (target == nullptr) {
        return Status::refused;
    }
    target->brightness = report[10];
    return Status::accepted;
}

SimulatedFirmware::Status SimulatedFirmware::getBrightness(Report &report)
{
    const auto *source = light(report);
    if (source == nullptr || !restIsZero(report, 10)) {
        return Status::refused;
    }
    report[10] = source->brightness;
    return Status::accepted;
}

// Lift-off: byte 8 is 0, byte 9 is 4, byte 10 is 1 where byte 11 holds a level.

SimulatedFirmware::Status SimulatedFirmware::prepareLiftOff(Report &report)
{
    if (report[8] != 0x00 || report[9] != liftOffSecond || report[10] != 0x00) {
        return Status::refused;
    }
    m_state.liftOffPrepared = true;
    return Status::accepted;
}

SimulatedFirmware::Status SimulatedFirmware::setLiftOff(Report &report)
{
    if (!m_state.liftOffPrepared || report[8] != 0x00 || report[9] != liftOffSecond || report[10] != 0x01 ||
        report[11] > maxLiftOff) {
        return Status::refused;
    }
    m_state.liftOff = report[11];
    m_state.liftOffPrepared = false;
    return Status::accepted;
}

// NOLINTNEXTLINE(readability-make-member-function-const): one handler among others
SimulatedFirmware::Status SimulatedFirmware::getLiftOff(Report &report)
{
    if (report[8] != 0x00 || report[9] != liftOffSecond || !restIsZero(report, 10)) {
        return Status::refused;
    }
    report[10] = 0x01;
    report[11] = m_state.liftOff;
    return Status::accepted;
}

// Battery: the answer stands in byte 9.

SimulatedFirmware::Status SimulatedFirmware::getBatteryLevel(Report &report)
{
    if (!m_capabilities.hasBattery) {
        return Status::unknownCommand;
    }
    if (!restIsZero(report, offset::arguments)) {
        return Status::refused;
    }
    report[9] = state(m_now).battery;
    return Status::accepted;
}

SimulatedFirmware::Status SimulatedFirmware::getChargingStatus(Report &report)
{
    if (!m_capabilities.reportsCharging) {
        return Status::unknownCommand;
    }
    if (!restIsZero(report, offset::arguments)) {
        return Status::refused;
    }
    report[9] = state(m_now).isCharging ? 0x01 : 0x00;
    return Status::accepted;
}

// Buttons: byte 8 the profile, byte 9 the button, byte 10 the layer, bytes 11 to 17 the function.

ButtonFunction *SimulatedFirmware::button(const Report &report)
{
    const auto found = std::ranges::find_if(m_state.buttons, [&](const auto &entry) {
        const auto &[profile, which, isHypershift] = entry.first;
        return profile == report[8] && buttonNumbers.at(static_cast<std::size_t>(which)) == report[9] &&
               std::uint8_t{isHypershift} == report[10];
    });
    return found != m_state.buttons.end() ? &found->second : nullptr;
}

SimulatedFirmware::Status SimulatedFirmware::setButtonMapping(Report &report)
{
    auto *target = button(report);
    if (target == nullptr) {
        return Status::refused;
    }
    std::ranges::copy(std::span{report}.subspan(offset::buttonFunction, target->size()), target->begin());
    return Status::accepted;
}

SimulatedFirmware::Status SimulatedFirmware::getButtonMapping(Report &report)
{
    const auto *source = button(report);
    if (source == nullptr || !restIsZero(report, offset::buttonFunction)) {
        return Status::refused;
    }
    std::ranges::copy(*source, report.begin() + offset::buttonFunction);
    return Status::accepted;
}

} // namespace kelmoth
