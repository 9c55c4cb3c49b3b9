#pragma once

#include "Core/HID/RazerProtocol.h"
#include "Platform/Simulated/SimulatedMouse.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>

namespace kelmoth {

/// What goes on inside a simulated mouse: the frame checks, the commands, the settings and the battery.
/// It reads requests from its own knowledge of the wire, not with the program's builders: each checks the
/// other. No lock of its own.
class SimulatedFirmware {
public:
    using Report = std::array<std::uint8_t, RazerProtocol::reportSize>;

    /// The outcome of a request: the status byte of its answer. Of the bytes that mean a failure this mouse
    /// uses two.
    enum class Status : std::uint8_t {
        notReady = 0x01, ///< received; the answer is not ready
        accepted = 0x02,
        refused = 0x03,        ///< a damaged frame or arguments out of range
        unknownCommand = 0x05, ///< this mouse has no such command
    };

    /// A mouse fresh from the factory.
    SimulatedFirmware(const SimulatedModel &model, std::chrono::microseconds now);

    /// wIndex of the interface that takes reports; none for a mouse that takes none.
    std::optional<std::uint16_t> reportIndex() const { return m_reportIndex; }

    /// How long the mouse works on a request.
    std::chrono::microseconds answerTime() const { return m_answerTime; }

    /// Carries out a request. None for one that is not addressed to this mouse (by its transaction id).
    std::optional<Report> answer(const Report &request, std::chrono::microseconds now);

    /// The request sent back with a status, sealed anew.
    static Report echo(const Report &request, Status status);

    SimulatedMouse::State state(std::chrono::microseconds now) const;
    void setState(SimulatedMouse::State state, std::chrono::microseconds now);

    /// Power was lost and came back: the settings stay, a half-done sequence does not.
    void restart() { m_state.liftOffPrepared = false; }

private:
    using Handler = Status (SimulatedFirmware::*)(Report &);
    struct Command;

    Status perform(Report &report);
    /// Whether the arguments from `first` on are zero, up to the CRC.
    static bool restIsZero(const Report &report, std::size_t first);
    SimulatedMouse::State::Light *light(const Report &report);
    ButtonFunction *button(const Report &report);

    Status setDPIStages(Report &report);
    Status getDPIStages(Report &report);
    Status setRGB(Report &report);
    Status getRGB(Report &report);
    Status setBrightness(Report &report);
    Status getBrightness(Report &report);
    Status prepareLiftOff(Report &report);
    Status setLiftOff(Report &report);
    Status getLiftOff(Report &report);
    Status getBatteryLevel(Report &report);
    Status getChargingStatus(Report &report);
    Status setButtonMapping(Report &report);
    Status getButtonMapping(Report &report);

    std::optional<std::uint16_t> m_reportIndex;
    std::chrono::microseconds m_answerTime;
    std::uint8_t m_dpiTransactionID;
    const DeviceCapabilities &m_capabilities;
    bool m_isOnCable = false;
    SimulatedMouse::State m_state;          ///< battery and charging as they were at `m_stateSince`
    std::chrono::microseconds m_stateSince; ///< on the mouse's clock
    std::chrono::microseconds m_now{};      ///< when the request under way came in
};

} // namespace kelmoth
