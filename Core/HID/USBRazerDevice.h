#pragma once

#include "Core/HID/TransactLoop.h"
#include "Platform/USB.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace kelmoth {

/// The primary path to a mouse: 90-byte reports as class control transfers to its protocol interface. It has
/// no lock: all calls come from the transfer thread, which keeps a reference during a transfer, so the device
/// is never closed during one.
class USBRazerDevice {
public:
    /// A device that is not open yet. `reportIndex` is the wIndex of every request. No transfer starts after
    /// `stop` is requested.
    USBRazerDevice(std::shared_ptr<USBService> service, std::shared_ptr<Sleeper> sleeper,
                   std::uint16_t vendorID, std::uint16_t productID, std::uint16_t reportIndex,
                   std::stop_token stop = {});
    ~USBRazerDevice();
    USBRazerDevice(const USBRazerDevice &) = delete;
    USBRazerDevice &operator=(const USBRazerDevice &) = delete;

    /// Finds the first device with the IDs and opens it; logs the outcome. False when it cannot be reached;
    /// an interface in use is only a warning. Blocks; transfer thread.
    bool open();

    /// Sends one report, zero-padded to 90 bytes; a longer one is sent as it is. Logs. True when the transfer
    /// succeeded.
    bool sendRazerReport(std::span<const std::uint8_t> report);

    /// Sends a report, waits, and reads 90 bytes back, while other processes are locked out; none when a
    /// transfer failed or a stop was requested. `waitTimeUs` in microseconds.
    std::optional<Data> sendReportAndGetResponse(std::span<const std::uint8_t> report,
                                                 std::uint32_t waitTimeUs);

    /// Sends a report until it is answered, as `transactLoop` does; logs. The response has 90 bytes.
    TransactResult transact(std::span<const std::uint8_t> report, std::uint32_t waitTimeUs);

private:
    std::unique_ptr<USBDeviceInterface> findInterface() const;
    int request(std::uint8_t bmRequestType, std::uint8_t bRequest, std::span<std::uint8_t> data);

    std::shared_ptr<USBService> m_service;
    std::shared_ptr<Sleeper> m_sleeper;
    std::uint16_t m_vendorID;
    std::uint16_t m_productID;
    std::uint16_t m_reportIndex;
    std::stop_token m_stop;
    std::unique_ptr<USBDeviceInterface> m_deviceInterface;
};

} // namespace kelmoth
