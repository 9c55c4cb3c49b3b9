#pragma once

#include "Core/Device/ButtonAction.h"
#include "Core/Device/DeviceCapabilities.h"
#include "Core/Device/MouseButton.h"
#include "Core/Device/RGBSetting.h"
#include "Platform/HID.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
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

class SimulatedFirmware;

/// Something that goes wrong on the wire. `failedTransfer` and `unplug` look at every transfer, `noAnswer`
/// and `rejected` at requests only, `notReady`, `otherCommand` and `shortRead` at reads only, `denied` at
/// attempts to open the mouse only. A read belongs to the last request that reached the mouse.
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
    std::optional<std::uint8_t> commandClass = std::nullopt; ///< only requests of this class; any when absent
    std::optional<std::uint8_t> commandID = std::nullopt;    ///< only requests with this id; any when absent
    int skip = 0;                                            ///< how many matching transfers go well first
    int times = 1;                                           ///< how many it then hits; negative: all
    std::uint8_t status = 0x03;                              ///< of `rejected`
    int error = 0;                                           ///< of `failedTransfer`: errno; EIO when 0
};

/// A whole mouse, seen from the wire: it takes 90-byte reports, checks every byte of them, keeps the
/// settings, and answers after some time. Any thread.
class SimulatedMouse {
public:
    /// Monotonic time since some fixed moment.
    using Clock = std::function<std::chrono::microseconds()>;

    SimulatedMouse(SimulatedModel model, Clock clock);
    ~SimulatedMouse();
    SimulatedMouse(const SimulatedMouse &) = delete;
    SimulatedMouse &operator=(const SimulatedMouse &) = delete;

    const SimulatedModel &model() const { return m_model; }

    /// The interface that takes vendor reports: wIndex of its control requests.
    std::uint16_t protocolInterface() const;

    /// HID SET_REPORT of feature report 0 on interface `wIndex`. 0 on success, else errno: EPIPE (a stall)
    /// on an interface without such a report or for a wrong length, ENODEV when unplugged.
    int setReport(std::uint16_t wIndex, std::span<const std::uint8_t> report);

    /// HID GET_REPORT of feature report 0 into `buffer`: the answer to the last request that was answered.
    /// All zero before the first; the request with status 0x01 until its answer is ready.
    FeatureReportRead getReport(std::uint16_t wIndex, std::span<std::uint8_t> buffer);

    /// 0, or the errno with which opening the mouse is refused now.
    int openStatus();

    /// Adds a fault; those added first are looked at first, and a transfer meets at most one.
    void addFault(SimulatedFault fault);
    void clearFaults();
    /// How many transfers, and attempts to open the mouse, have met a fault of each kind.
    std::map<SimulatedFault::Kind, int> metFaults() const;

    bool isAttached() const;
    /// Counts the attaches: 1 at first, one more at each replug. What was opened in one attach is gone for
    /// good in the next.
    int attachment() const;
    /// From now on every transfer fails with ENODEV. Nothing when already pulled out.
    void unplug();
    /// Puts the mouse back: it keeps its settings, not its last answer. Nothing when already attached.
    void replug();
    /// Called, on the thread of the change, whenever the mouse is pulled out or put back. The mouse may be
    /// used from within it.
    void setAttachmentCallback(std::function<void(bool attached)> callback);

    /// How many hold its USB interface: they have opened it and not closed it yet.
    std::atomic<int> holders = 0;

    /// One transfer as it went over the wire.
    struct Transfer {
        bool isSet = false;
        std::uint16_t wIndex = 0;
        std::vector<std::uint8_t> bytes; ///< the report sent, or the bytes given back
        int status = 0;
    };
    /// Every transfer so far (of very many the newest ten thousand), oldest first, and forgets them.
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
    /// The state at this moment: the charge drifts with the clock.
    State state() const;
    /// Takes any values: a mouse may hold what it should not. A button or light that is left out is one that
    /// the mouse does not have.
    void setState(State state);

private:
    using Report = std::array<std::uint8_t, 90>;

    /// A request and what the mouse has to say to it.
    struct Exchange {
        Report request;
        Report answer;
        std::chrono::microseconds readyAt;
    };

    std::optional<SimulatedFault> nextFault(std::initializer_list<SimulatedFault::Kind> kinds,
                                            const std::optional<Report> &request);
    int fail(const SimulatedFault &fault);
    bool stalls(std::uint16_t wIndex) const;
    int takeRequest(std::uint16_t wIndex, std::span<const std::uint8_t> report);
    FeatureReportRead giveAnswer(std::uint16_t wIndex, std::span<std::uint8_t> buffer);
    Report currentAnswer() const;
    void detach();
    void record(Transfer transfer);
    void finish(std::unique_lock<std::mutex> lock, bool wasAttached);

    const SimulatedModel m_model;
    const Clock m_clock;
    mutable std::mutex m_mutex; ///< guards all that follows
    std::unique_ptr<SimulatedFirmware> m_firmware;
    std::optional<Report> m_lastRequest; ///< as it reached the mouse, heard or not
    std::optional<Exchange> m_exchange;
    std::vector<SimulatedFault> m_faults;
    std::map<SimulatedFault::Kind, int> m_metFaults;
    std::deque<Transfer> m_transfers;
    std::function<void(bool)> m_attachmentCallback;
    bool m_isAttached = true;
    int m_attachment = 1;
};

} // namespace kelmoth
