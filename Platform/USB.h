#pragma once

#include "Platform/Exchange.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace kelmoth {

/// One control request on a device's default pipe. Field names and meanings are those of the USB setup
/// packet; wLength is the size of `data`.
struct USBControlRequest {
    std::uint8_t bmRequestType = 0;
    std::uint8_t bRequest = 0;
    std::uint16_t wValue = 0;
    std::uint16_t wIndex = 0;
    std::span<std::uint8_t> data; ///< sent or filled, depending on the direction in bmRequestType
};

/// The class requests to set and get feature report 0 of a HID interface (wValue: report type 3, report ID
/// 0).
namespace hidClassRequest {
inline constexpr std::uint8_t typeOut = 0x21;
inline constexpr std::uint8_t typeIn = 0xA1;
inline constexpr std::uint8_t setReport = 0x09;
inline constexpr std::uint8_t getReport = 0x01;
inline constexpr std::uint16_t featureReport = 0x0300;
} // namespace hidClassRequest

/// Status of a transfer to a device that is not open.
inline constexpr int usbStatusNotOpen = ENOTCONN;

/// Sends control requests to one matched device. Transfer thread throughout.
class USBDeviceInterface : public ExchangeChannel {
public:
    /// Claims one interface of the device. 0 on success, else errno. Requests also work after a failure: a
    /// kernel driver may hold the interface.
    virtual int open(std::uint16_t interfaceNumber) = 0;

    /// Releases the interface. Also called after a failed `open`.
    virtual void close() = 0;

    /// Performs one control transfer. 0 on success, else errno; a truncated request is EIO. An answer may be
    /// shorter than `data`, whose other bytes then stay unchanged, but never longer. Blocks until the device
    /// answers, at most some seconds.
    virtual int deviceRequest(const USBControlRequest &request) = 0;
};

/// A device that matched.
class USBDevice {
public:
    virtual ~USBDevice() = default;

    struct InterfaceResult {
        int status = 0;                                ///< 0, or errno
        std::unique_ptr<USBDeviceInterface> interface; ///< null also when the device cannot be reached
    };

    /// Prepares access to the device; sends nothing. Transfer thread.
    virtual InterfaceResult createInterface() = 0;
};

/// Access to the system's USB devices.
class USBService {
public:
    virtual ~USBService() = default;

    struct Matches {
        int status = 0; ///< 0, or the errno of the enumeration
        std::vector<std::shared_ptr<USBDevice>> devices;
    };

    /// The attached devices with these IDs, in the system's order. Transfer thread.
    virtual Matches matchingDevices(std::uint16_t vendorID, std::uint16_t productID) = 0;
};

} // namespace kelmoth
