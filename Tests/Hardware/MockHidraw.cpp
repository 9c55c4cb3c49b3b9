#include "Tests/Hardware/MockHidraw.h"

#include <cerrno>
#include <cstring>
#include <linux/hidraw.h>
#include <sys/ioctl.h>
#include <utility>

namespace kelmoth {

MockHidraw::MockHidraw(std::shared_ptr<SimulatedMouse> mouse, std::uint16_t interface)
    : productID(mouse->model().productID), m_mouse(std::move(mouse)), m_interface(interface)
{
}

int MockHidraw::ioctl(unsigned long request, std::span<std::uint8_t> argument)
{
    const int size = static_cast<int>(argument.size());
    if (isGone) {
        return -ENODEV;
    }
    if (request == HIDIOCGRAWINFO) {
        const ::hidraw_devinfo info{.bustype = 3,
                                    .vendor = static_cast<__s16>(m_mouse->model().vendorID),
                                    .product = static_cast<__s16>(productID.load())};
        std::memcpy(argument.data(), &info, sizeof info);
        return 0;
    }
    // Reports begin with their ID, and 0 stands for none: it is not sent.
    if (argument.size() < 2 || argument[0] != 0) {
        return -EINVAL;
    }
    if (request == HIDIOCSFEATURE(argument.size())) {
        const int status = m_mouse->setReport(m_interface, argument.subspan(1));
        return status != 0 ? -status : size - (isNextWriteCut.exchange(false) ? 1 : 0);
    }
    if (request == HIDIOCGFEATURE(argument.size())) {
        const auto read = m_mouse->getReport(m_interface, argument.subspan(1));
        return read.status != 0 ? -read.status : static_cast<int>(read.length) + 1;
    }
    return -EINVAL;
}

} // namespace kelmoth
