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

/// Result of reading a feature report.
struct FeatureReportRead {
    int status = 0;         ///< 0 on success, else errno
    std::size_t length = 0; ///< bytes of the buffer that the mouse filled; 0 after a failure
};

/// What the system knows about a HID interface, found without device access. Unknown properties are absent.
/// IDs may exceed 16 bits. Texts are valid UTF-8 or raw bytes from the hardware, and may hold control
/// characters.
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

/// One HID interface of an attached device. It stays a valid object after the detach; its transfers then
/// fail.
class HIDDevice : public ExchangeChannel {
public:
    /// The properties of the interface, from the first call on unchanged. Main thread.
    virtual HIDProperties properties() const = 0;

    /// The path of the interface's device node. Main thread.
    virtual std::string path() const = 0;

    /// Whether this process can access the interface now: 0, or errno (EACCES: no permission). Sends nothing.
    /// May block while it opens the node: not for the main thread of a program with a panel.
    virtual int probeAccess() = 0;

    /// Whether both are the same interface of the same attach. Main thread.
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

    /// The matching interfaces present now, in no particular order.
    virtual std::vector<std::shared_ptr<HIDDevice>> copyDevices() = 0;

    /// Called from the event loop for each matching interface that is attached while the manager is open, and
    /// maybe for those already present.
    virtual void registerDeviceMatchingCallback(Callback callback) = 0;

    /// Called from the event loop for each interface that is detached while the manager is open.
    virtual void registerDeviceRemovalCallback(Callback callback) = 0;

    /// Starts the callbacks. 0 on success, else errno.
    virtual int open() = 0;

    /// Ends the callbacks.
    virtual void close() = 0;
};

/// Access to the system's HID devices.
class HIDService {
public:
    virtual ~HIDService() = default;

    /// A new manager; null when the system cannot watch devices. Main thread.
    virtual std::unique_ptr<HIDManager> createManager() = 0;
};

} // namespace kelmoth
