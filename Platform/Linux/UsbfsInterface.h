#pragma once

#include "Platform/FileDescriptor.h"
#include "Platform/USB.h"

#include <cstdint>
#include <memory>
#include <string>

struct libusb_context;
struct libusb_device_handle;

namespace kelmoth {

/// One interface of a USB device, held through libusb for as long as the object lives. Transfer thread.
class UsbfsInterface {
public:
    struct Claim {
        int status = 0; ///< 0, or errno: EBUSY when a kernel driver or another process holds the interface
        std::unique_ptr<UsbfsInterface> interface;
    };
    /// Opens the device node and claims the interface. A driver that holds it stays where it is.
    static Claim claim(const std::string &node, std::uint16_t interfaceNumber);

    ~UsbfsInterface();
    UsbfsInterface(const UsbfsInterface &) = delete;
    UsbfsInterface &operator=(const UsbfsInterface &) = delete;

    /// The open device node.
    int fileDescriptor() const { return m_file.get(); }

    /// One control transfer; at most five seconds. 0, or errno; a request of which less was sent
    /// than was given is EIO, an answer may be short.
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

    // libusb works on the file that we opened and leaves it open: the order matters.
    FileDescriptor m_file;
    std::unique_ptr<libusb_context, ContextExit> m_context;
    std::unique_ptr<libusb_device_handle, HandleClose> m_handle;
    std::uint16_t m_number;
    bool m_isClaimed = false;
};

} // namespace kelmoth
