#include "Platform/Linux/UsbfsInterface.h"

#include <libusb.h>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <utility>

namespace kelmoth {

namespace {

constexpr unsigned transferTimeoutMs = 5000;

struct ErrorRow {
    int libusb;
    int system;
};

constexpr std::array errorTable{
    ErrorRow{LIBUSB_SUCCESS, 0},
    ErrorRow{LIBUSB_ERROR_INVALID_PARAM, EINVAL},
    ErrorRow{LIBUSB_ERROR_ACCESS, EACCES},
    ErrorRow{LIBUSB_ERROR_NO_DEVICE, ENODEV},
    ErrorRow{LIBUSB_ERROR_NOT_FOUND, ENOENT},
    ErrorRow{LIBUSB_ERROR_BUSY, EBUSY},
    ErrorRow{LIBUSB_ERROR_TIMEOUT, ETIMEDOUT},
    ErrorRow{LIBUSB_ERROR_OVERFLOW, EOVERFLOW},
    ErrorRow{LIBUSB_ERROR_PIPE, EPIPE},
    ErrorRow{LIBUSB_ERROR_INTERRUPTED, EINTR},
    ErrorRow{LIBUSB_ERROR_NO_MEM, ENOMEM},
    ErrorRow{LIBUSB_ERROR_NOT_SUPPORTED, ENOTSUP},
};

/// The errno of a libusb status; EIO for unspecific ones.
int systemError(int status)
{
    for (const auto &row : errorTable) {
        if (row.libusb == status) {
            return row.system;
        }
    }
    return EIO;
}

} // namespace

void UsbfsInterface::ContextExit::operator()(libusb_context *context) const
{
    libusb_exit(context);
}

void UsbfsInterface::HandleClose::operator()(libusb_device_handle *handle) const
{
    libusb_close(handle);
}

UsbfsInterface::UsbfsInterface(FileDescriptor file, std::uint16_t number)
    : m_file(std::move(file)), m_number(number)
{
}

UsbfsInterface::~UsbfsInterface()
{
    if (m_isClaimed) {
        libusb_release_interface(m_handle.get(), m_number);
    }
}

UsbfsInterface::Claim UsbfsInterface::claim(const std::string &node, std::uint16_t interfaceNumber)
{
    FileDescriptor file(::open(node.c_str(), O_RDWR | O_CLOEXEC));
    if (!file) {
        return {.status = errno, .interface = nullptr};
    }
    std::unique_ptr<UsbfsInterface> interface(new UsbfsInterface(std::move(file), interfaceNumber));
    if (const int status = interface->start(); status != 0) {
        return {.status = status, .interface = nullptr};
    }
    return {.status = 0, .interface = std::move(interface)};
}

int UsbfsInterface::start()
{
    // No device discovery: udev does it already, and a second one would cost an enumeration and a thread.
    libusb_set_option(nullptr, LIBUSB_OPTION_NO_DEVICE_DISCOVERY);
    libusb_context *context = nullptr;
    if (const int status = libusb_init(&context); status != LIBUSB_SUCCESS) {
        return systemError(status);
    }
    m_context.reset(context);

    libusb_device_handle *handle = nullptr;
    if (const int status = libusb_wrap_sys_device(context, m_file.get(), &handle); status != LIBUSB_SUCCESS) {
        return systemError(status);
    }
    m_handle.reset(handle);

    if (const int status = libusb_claim_interface(handle, m_number); status != LIBUSB_SUCCESS) {
        return systemError(status);
    }
    m_isClaimed = true;
    return 0;
}

int UsbfsInterface::controlTransfer(const USBControlRequest &request)
{
    if (request.data.size() > std::numeric_limits<std::uint16_t>::max()) {
        return EINVAL;
    }
    const auto length = static_cast<std::uint16_t>(request.data.size());
    const int moved =
        libusb_control_transfer(m_handle.get(), request.bmRequestType, request.bRequest, request.wValue,
                                request.wIndex, request.data.data(), length, transferTimeoutMs);
    if (moved < 0) {
        return systemError(moved);
    }
    const bool isRead = (request.bmRequestType & LIBUSB_ENDPOINT_IN) != 0;
    return isRead || moved == length ? 0 : EIO;
}

} // namespace kelmoth
