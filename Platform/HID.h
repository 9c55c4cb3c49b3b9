#pragma once

#include "Platform/Exchange.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kelmoth {

/// What a read of a feature report gave.
struct FeatureReportRead {
    int status = 0;         ///< 0 on success, else errno
    std::size_t length = 0; ///< bytes of the buffer that the mouse filled; 0 after a failure
};

/// What the system knows of a HID interface, without touching the device. What it does not know is absent.
/// IDs are as the system has them: they may exceed 16 bits. Texts are valid UTF-8 or as the hardware gives
/// them, and may hold control characters.
struct HIDProperties {
    std::optional<std::int64_t> vendorID = std::nullopt;
    std::optional<std::int64_t> productID = std::nullopt;
    /// The longest feature report in bytes, with its ID byte where the report descriptor uses IDs; absent
    /// when there are none or the descriptor is unusable.
    std::optional<std::int64_t> maxFeatureReportSize = std::nullopt;
    std::optional<std::string> product = std::nullopt;
    std::optional<std::string> serialNumber = std::nullopt;
    std::optional<std::string> transport = std::nullopt; ///< "USB", "Bluetooth" or "Unknown"
};

/// One HID interface of an attached device. It stays a valid object after the device has gone; its
/// transfers then fail.
class HIDDevice : public ExchangeChannel {
public:
    /// What the system knew of the interface when this was first asked. Main thread.
    virtual HIDProperties properties() const = 0;

    /// Where the system shows the interface: the path of its device node. Main thread.
    virtual std::string path() const = 0;

    /// Whether this process may talk to the interface now: 0, or the errno of the refusal (EACCES: no
    /// permission). Sends nothing. May block as long as opening a node does: not on the main thread of a
    /// program with a panel.
    virtual int probeAccess() = 0;

    /// Whether both stand for the same interface of the same attach. Main thread.
    virtual bool isEqual(const HIDDevice &other) const = 0;

    /// Sends a feature report with report ID 0; the ID byte is not part of `report`. Blocks; transfer
    /// thread, within an exchange. 0 on success, else errno; a transfer cut short is EIO.
    virtual int setFeatureReport(std::span<const std::uint8_t> report) = 0;

    /// Reads the feature report with ID 0 into `buffer`, at most its size; the ID byte is not part of it.
    /// Blocks; transfer thread, within an exchange.
    virtual FeatureReportRead getFeatureReport(std::span<std::uint8_t> buffer) = 0;
};

/// Watches the system's HID interfaces. Main thread throughout.
class HIDManager {
public:
    using Callback = std::function<void(const std::shared_ptr<HIDDevice> &)>;

    virtual ~HIDManager() = default;

    /// Limits everything below to interfaces of these vendors.
    virtual void setDeviceMatching(std::span<const std::uint16_t> vendorIDs) = 0;

    /// The matching interfaces that are present now, in no particular order.
    virtual std::vector<std::shared_ptr<HIDDevice>> copyDevices() = 0;

    /// Called from the event loop for each matching interface that attaches once the manager is open, and
    /// perhaps also for those already present.
    virtual void registerDeviceMatchingCallback(Callback callback) = 0;

    /// Called from the event loop for each interface that goes away while the manager is open.
    virtual void registerDeviceRemovalCallback(Callback callback) = 0;

    /// Starts the callbacks. 0 on success, else errno.
    virtual int open() = 0;

    /// Ends the callbacks.
    virtual void close() = 0;
};

/// The door to the system's HID devices.
class HIDService {
public:
    virtual ~HIDService() = default;

    /// A new manager; none when the system offers no way to watch devices. Main thread.
    virtual std::unique_ptr<HIDManager> createManager() = 0;
};

} // namespace kelmoth
