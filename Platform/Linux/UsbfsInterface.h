#pragma once

#include "Platform/FileDescriptor.h"
#include "Platform/USB.h"

#include <cstdint>
#include <memory>
#include <string>

struct libusb_context;
struct libusb_device_handle;

namespace kelmoth {

/// One interface of a USB device, claimed through libusb for the object's lifetime. Transfer thread.
class UsbfsInterface {
public:
    struct Claim {
        int status = 0; ///< 0, or errno: EBUSY when a kernel driver or another process holds the interface
        std::unique_ptr<UsbfsInterface> interface;
    };
    /// Opens the device node and claims the interface. Does not detach a driver that holds it.
    static Claim claim(const std::string &node, std::uint16_t interfaceNumber);

    ~UsbfsInterface();
    UsbfsInterface(const UsbfsInterface &) = delete;
    UsbfsInterface &operator=(const UsbfsInterface &) = delete;

    /// The open device node.
    int fileDescriptor() const { return m_file.get(); }

    /// One control transfer; timeout five seconds. 0, or errno; a truncated request is EIO, an answer may be
    /// short.
    int controlTransfer(const USBControlRequest &request);

private:
    UsbfsInterface(FileDescriptor file, std::uint16_t number);
    int start();

    struct ContextExit {
        void operator()(libusb_context *context) const;
    };
    struct HandleClose {
        void operator()(libusb_device_handle *handle) const;
    };

    // libusb uses our open file and does not close it: keep this order of members.
    FileDescriptor m_file;
    std::unique_ptr<libusb_context, ContextExit> m_context;
    std::unique_ptr<libusb_device_handle, HandleClose> m_handle;
    std::uint16_t m_number;
    bool m_isClaimed = false;
};

} // namespace kelmoth
