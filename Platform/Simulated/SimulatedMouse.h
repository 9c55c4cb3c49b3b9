#pragma once

#include "Core/Device/ButtonAction.h"
#include "Core/Device/DeviceCapabilities.h"
#include "Core/Device/MouseButton.h"
#include "Core/Device/RGBSetting.h"
#include "Platform/HID.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace kelmoth {

/// Which mouse is simulated, and how the system shows it.
struct SimulatedModel {
    std::uint16_t vendorID = 0;
    std::uint16_t productID = 0;
    std::string productName;
    std::string serialNumber;
    std::string transport; ///< "USB" or "Bluetooth"

    /// The model of a command-line name: "basilisk-v3" and so on, each with an optional ":bluetooth", or
    /// "unknown". None for any other name.
    static std::optional<SimulatedModel> named(std::string_view name);

    /// Every name that `named` takes, without ":bluetooth".
    static std::vector<std::string> names();
};

/// Something that goes wrong on the wire.
struct SimulatedFault {
    enum class Kind {
        noAnswer,       ///< the request is swallowed: reads give the previous answer, if any
        notReady,       ///< reads give the echoed request with status 0x01
        rejected,       ///< the answer carries `status` and the mouse changes nothing
        otherCommand,   ///< reads give an answer to another command
        failedTransfer, ///< the transfer itself fails with `error`
        shortRead,      ///< a read gives fewer than 90 bytes
        unplug,         ///< the mouse is pulled out at this transfer
        denied,         ///< opening is refused with EACCES for as long as the fault lasts
    };
    Kind kind = Kind::noAnswer;
    std::optional<std::uint8_t> commandClass; ///< only requests of this class; any when absent
    std::optional<std::uint8_t> commandID;    ///< only requests with this id; any when absent
    int skip = 0;                             ///< how many matching transfers go well first
    int times = 1;                            ///< how many it then hits; negative: all
    std::uint8_t status = 0x03;
    int error = 0;                            ///< errno
};

/// A whole mouse, seen from the wire: it takes 90-byte reports, checks them as the firmware does, keeps the
/// settings, and answers after the time that a real one takes. Any thread.
class SimulatedMouse {
public:
    /// Monotonic time since some fixed moment.
    using Clock = std::function<std::chrono::microseconds()>;

    SimulatedMouse(SimulatedModel model, Clock clock);

    const SimulatedModel &model() const { return m_model; }

    /// The interface that takes vendor reports: wIndex of its control requests.
    std::uint16_t protocolInterface() const;

    /// HID SET_REPORT of feature report 0 on interface `wIndex`. 0 on success, else errno: EPIPE (a stall)
    /// on an interface without such a report or for a wrong length, ENODEV when unplugged.
    int setReport(std::uint16_t wIndex, std::span<const std::uint8_t> report);

    /// HID GET_REPORT of feature report 0 into `buffer`.
    FeatureReportRead getReport(std::uint16_t wIndex, std::span<std::uint8_t> buffer);

    /// 0, or the errno with which opening the mouse is refused now.
    int openStatus();

    /// Adds a fault; those added first are looked at first.
    void addFault(SimulatedFault fault);
    void clearFaults();

    bool isAttached() const;
    void unplug();
    void replug();
    /// Called, on the thread of the change, whenever the mouse is pulled out or put back.
    void setAttachmentCallback(std::function<void(bool attached)> callback);

    /// One transfer as it went over the wire.
    struct Transfer {
        bool isSet = false;
        std::uint16_t wIndex = 0;
        std::vector<std::uint8_t> bytes; ///< the report sent, or the bytes given back
        int status = 0;
    };
    /// Every transfer so far, oldest first, and forgets them.
    std::vector<Transfer> takeTransfers();

    /// What the mouse holds. Layer false is the normal one, true hypershift.
    struct State {
        std::vector<std::uint16_t> dpiStages;
        std::uint8_t activeStage = 1; ///< 1-based
        struct Light {
            std::uint8_t effect = 1;
            std::array<std::uint8_t, 6> parameters{}; ///< bytes 11 to 16 of the effect report
            std::uint8_t brightness = 255;
        };
        std::map<RGBZone, Light> lights;
        std::map<std::tuple<int, MouseButton, bool>, ButtonFunction> buttons; ///< by profile, button, layer
        std::uint8_t liftOff = 1;
        bool liftOffPrepared = false;
        std::uint8_t battery = 0; ///< raw charge, 0 to 255
        bool isCharging = false;
    };
    State state() const;
    void setState(State state);

private:
    // The implementer's.
};

} // namespace kelmoth
