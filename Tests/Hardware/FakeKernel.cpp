#include "Tests/Hardware/FakeKernel.h"

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <fstream>
#include <linux/hidraw.h>
#include <span>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace kelmoth {
namespace {

std::atomic<FakeKernel *> installed;
std::atomic<::ino_t> installedNode;

} // namespace

FakeKernel::FakeKernel(std::shared_ptr<SimulatedMouse> mouse) : m_mouse(std::move(mouse))
{
    std::ofstream(node()).put('\n');
    struct ::stat status{};
    ::stat(node().c_str(), &status);
    installedNode = status.st_ino;
    installed = this;
}

FakeKernel::~FakeKernel()
{
    installed = nullptr;
}

int FakeKernel::handle(unsigned long request, void *argument)
{
    if (request == HIDIOCGRAWINFO) {
        *static_cast<::hidraw_devinfo *>(argument) = {.bustype = 3,
                                                      .vendor = static_cast<__s16>(m_mouse->model().vendorID),
                                                      .product =
                                                          static_cast<__s16>(m_mouse->model().productID)};
        return 0;
    }
    if (onTransfer) {
        onTransfer();
    }
    const auto size = _IOC_SIZE(request);
    const auto report = std::span(static_cast<std::uint8_t *>(argument), size).subspan(1);
    if (request == HIDIOCSFEATURE(size)) {
        const int status = m_mouse->setReport(m_mouse->protocolInterface(), report);
        return status == 0 ? static_cast<int>(size) : -status;
    }
    const auto read = m_mouse->getReport(m_mouse->protocolInterface(), report);
    return read.status == 0 ? static_cast<int>(read.length) + 1 : -read.status;
}

} // namespace kelmoth

extern "C" int ioctl(int fd, unsigned long request, ...) noexcept
{
    va_list arguments;
    va_start(arguments, request);
    void *const argument = va_arg(arguments, void *);
    va_end(arguments);

    auto *const kernel = kelmoth::installed.load();
    struct ::stat status{};
    if (kernel && ::fstat(fd, &status) == 0 && status.st_ino == kelmoth::installedNode) {
        const int result = kernel->handle(request, argument);
        if (result < 0) {
            errno = -result;
            return -1;
        }
        return result;
    }
    return static_cast<int>(::syscall(SYS_ioctl, fd, request, argument));
}
