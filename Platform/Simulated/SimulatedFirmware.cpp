#include "Platform/Simulated/SimulatedFirmware.h"

#include "Core/Device/BasiliskProductID.h"

#include <algorithm>
#include <span>

namespace kelmoth {

namespace {

using namespace std::chrono_literals;
namespace code = RazerProtocol::code;
namespace offset = RazerProtocol::offset;
using Report = SimulatedFirmware::Report;

/// How long the simulated mouse works on a request: the pauses of 10 and 60 ms leave room for it.
constexpr std::chrono::microseconds quickAnswerTime = 8ms;
constexpr std::chrono::microseconds usualAnswerTime = 45ms;

constexpr std::uint8_t usualTransactionID = 0x1F;
constexpr std::size_t reservedOffset = 89;
constexpr int lastProfile = 5;

constexpr std::uint8_t factoryCharge = 200; ///< 78 %
constexpr std::uint8_t fullCharge = 255;
constexpr std::chrono::microseconds dischargePerPercent = 5min;
constexpr std::chrono::microseconds chargePerPercent = 1min;

/// What each button does from the factory. A model with fewer buttons has the first ones.
struct FactoryButton {
    MouseButton button;
    ButtonFunction function;
};
constexpr std::array factoryButtons{
    FactoryButton{MouseButton::left, {0x01, 0x01, 0x01}},
    FactoryButton{MouseButton::right, {0x01, 0x01, 0x02}},
    FactoryButton{MouseButton::middle, {0x01, 0x01, 0x03}},
    FactoryButton{MouseButton::forward, {0x01, 0x01, 0x05}},
    FactoryButton{MouseButton::back, {0x01, 0x01, 0x04}},
    FactoryButton{MouseButton::dpiUp, {0x06, 0x01, 0x06}},
    FactoryButton{MouseButton::dpiDown, {0x12, 0x01, 0x01}},
    FactoryButton{MouseButton::scrollUp, {0x01, 0x01, 0x09}},
    FactoryButton{MouseButton::scrollDown, {0x01, 0x01, 0x0A}},
    FactoryButton{MouseButton::clutch, {0x0C, 0x01, 0x01}},
    FactoryButton{MouseButton::profile, {0x07, 0x01, 0x04}},
};

std::uint8_t checksum(const Report &report)
{
    std::uint8_t sum = 0;
    for (std::size_t i = 2; i < offset::crc; ++i) {
        sum ^= report[i];
    }
    return sum;
}

bool isFrameIntact(const Report &report)
{
    const bool headIsZero = report[offset::status] == 0 && report[2] == 0 && report[3] == 0 && report[4] == 0;
    return headIsZero && report[reservedOffset] == 0 && report[offset::crc] == checksum(report);
}

SimulatedMouse::State factoryState(const DeviceCapabilities &capabilities, bool isOnCable)
{
    SimulatedMouse::State state;
    for (const auto dpi : capabilities.factoryDPIPresets) {
        state.dpiStages.push_back(static_cast<std::uint16_t>(dpi));
    }
    for (const auto zone : capabilities.rgbZones) {
        state.lights[zone] = {0x01, {0x00, 0x00, 0x01, 0x00, 0xFF, 0x00}, 0xFF};
    }
    const auto count = std::min(static_cast<std::size_t>(capabilities.buttonCount), factoryButtons.size());
    for (const auto &[button, function] : std::span{factoryButtons}.first(count)) {
        for (int profile = 0; profile <= lastProfile; ++profile) {
            state.buttons[{profile, button, false}] = function;
            state.buttons[{profile, button, true}] = function;
        }
    }
    state.battery = capabilities.hasBattery ? factoryCharge : 0;
    state.isCharging = capabilities.hasBattery && isOnCable;
    return state;
}

} // namespace

SimulatedFirmware::SimulatedFirmware(const SimulatedModel &model, std::chrono::microseconds now)
    : m_answerTime(usualAnswerTime),
      m_dpiTransactionID(usualTransactionID),
      m_capabilities(DeviceCapabilities::forDevice(model.productID)),
      m_stateSince(now)
{
    std::uint16_t reportIndex = 0;
    if (const auto productID = basiliskProductID(model.productID)) {
        const auto &row = basiliskModel(*productID);
        reportIndex = row.reportIndex;
        m_dpiTransactionID = row.dpiTransactionID;
        m_isOnCable = *productID == BasiliskProductID::basiliskV3ProWired;
        m_answerTime = *productID == BasiliskProductID::basiliskV3 ? quickAnswerTime : usualAnswerTime;
    }
    if (model.transport == "USB") {
        m_reportIndex = reportIndex;
    }
    m_state = factoryState(m_capabilities, m_isOnCable);
}

struct SimulatedFirmware::Command {
    RazerProtocol::CommandCode code;
    Handler handler;
};

std::optional<Report> SimulatedFirmware::answer(const Report &request, std::chrono::microseconds now)
{
    const bool isDPI = request[offset::commandClass] == code::setDPIStages.commandClass &&
                       (request[offset::commandID] == code::setDPIStages.commandID ||
                        request[offset::commandID] == code::getDPIStages.commandID);
    if (request[offset::transactionID] != (isDPI ? m_dpiTransactionID : usualTransactionID)) {
        return std::nullopt;
    }
    m_now = now;
    Report report = request;
    const auto status = isFrameIntact(request) ? perform(report) : Status::refused;
    return echo(status == Status::accepted ? report : request, status);
}

SimulatedFirmware::Status SimulatedFirmware::perform(Report &report)
{
    using F = SimulatedFirmware;
    // The effects with a colour are longer.
    constexpr RazerProtocol::CommandCode setColor{code::setRGB.commandClass, code::setRGB.commandID, 0x09};
    static constexpr std::array commands{
        Command{code::setDPIStages, &F::setDPIStages},
        Command{code::getDPIStages, &F::getDPIStages},
        Command{code::setRGB, &F::setRGB},
        Command{setColor, &F::setRGB},
        Command{code::getRGB, &F::getRGB},
        Command{code::setBrightness, &F::setBrightness},
        Command{code::getBrightness, &F::getBrightness},
        Command{code::prepareLiftOff, &F::prepareLiftOff},
        Command{code::setLiftOff, &F::setLiftOff},
        Command{code::getLiftOff, &F::getLiftOff},
        Command{code::getBatteryLevel, &F::getBatteryLevel},
        Command{code::getChargingStatus, &F::getChargingStatus},
        Command{code::setButtonMapping, &F::setButtonMapping},
        Command{code::getButtonMapping, &F::getButtonMapping},
    };
    auto status = Status::unknownCommand;
    for (const auto &[known, handler] : commands) {
        if (known.commandClass != report[offset::commandClass] ||
            known.commandID != report[offset::commandID]) {
            continue;
        }
        if (known.dataSize == report[offset::dataSize]) {
            return restIsZero(report, offset::arguments + known.dataSize) ? (this->*handler)(report)
                                                                          : Status::refused;
        }
        status = Status::refused;
    }
    return status;
}

Report SimulatedFirmware::echo(const Report &request, Status status)
{
    Report report = request;
    report[offset::status] = static_cast<std::uint8_t>(status);
    report[offset::crc] = checksum(report);
    return report;
}

bool SimulatedFirmware::restIsZero(const Report &report, std::size_t first)
{
    return std::all_of(report.begin() + static_cast<std::ptrdiff_t>(first), report.begin() + offset::crc,
                       [](std::uint8_t byte) { return byte == 0; });
}

SimulatedMouse::State SimulatedFirmware::state(std::chrono::microseconds now) const
{
    auto state = m_state;
    const auto elapsed = std::max(now - m_stateSince, 0us);
    const auto steps = [elapsed](std::chrono::microseconds perPercent) {
        return elapsed.count() * fullCharge / (perPercent.count() * 100);
    };
    std::int64_t charge = m_state.battery;
    if (m_state.isCharging) {
        charge += steps(chargePerPercent);
    } else if (m_capabilities.hasBattery && !m_isOnCable) {
        charge -= steps(dischargePerPercent);
    }
    state.battery = static_cast<std::uint8_t>(std::clamp<std::int64_t>(charge, 0, fullCharge));
    state.isCharging = m_state.isCharging && charge < fullCharge;
    return state;
}

void SimulatedFirmware::setState(SimulatedMouse::State state, std::chrono::microseconds now)
{
    m_state = std::move(state);
    m_stateSince = now;
}

} // namespace kelmoth
