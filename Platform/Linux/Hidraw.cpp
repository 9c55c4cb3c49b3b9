#include "Platform/Linux/Hidraw.h"

#include "Platform/Linux/ExchangeLock.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <linux/hidraw.h>
#include <sys/ioctl.h>
#include <utility>
#include <vector>

namespace kelmoth {

namespace {

/// Pauses between attempts to open a node without permission: 310 ms in all.
constexpr std::array accessPauses{
    std::chrono::milliseconds{10}, std::chrono::milliseconds{20},  std::chrono::milliseconds{40},
    std::chrono::milliseconds{80}, std::chrono::milliseconds{160},
};

/// The most that the size field of an ioctl number holds, ID byte included; the kernel's limit is one more.
constexpr std::size_t maxBufferSize = (1U << _IOC_SIZEBITS) - 1;

} // namespace

Hidraw::Hidraw(std::string path, Identity identity, std::shared_ptr<Sleeper> sleeper)
    : m_path(std::move(path)), m_identity(identity), m_sleeper(std::move(sleeper))
{
}

int Hidraw::open()
{
    if (m_hasFailed) {
        return ENODEV;
    }
    const std::lock_guard lock(m_mutex);
    if (m_file) {
        return 0;
    }
    int status = tryOpen();
    if (status == EACCES && !m_waitedForAccess) {
        m_waitedForAccess = true;
        for (const auto pause : accessPauses) {
            m_sleeper->sleep(pause);
            status = tryOpen();
            if (status != EACCES) {
                break;
            }
        }
    }
    return status;
}

int Hidraw::tryOpen()
{
    int fd = -1;
    do {
        fd = ::open(m_path.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK);
    } while (fd < 0 && errno == EINTR);
    if (fd < 0) {
        return errno;
    }
    FileDescriptor file(fd);

    ::hidraw_devinfo info{};
    if (::ioctl(fd, HIDIOCGRAWINFO, &info) < 0) {
        return errno;
    }
    // The kernel reports the low 16 bits of each, as signed numbers.
    if (static_cast<std::uint16_t>(info.vendor) != static_cast<std::uint16_t>(m_identity.vendorID) ||
        static_cast<std::uint16_t>(info.product) != static_cast<std::uint16_t>(m_identity.productID)) {
        return ENODEV;
    }
    m_file = std::move(file);
    return 0;
}

int Hidraw::setFeatureReport(std::span<const std::uint8_t> report)
{
    const std::size_t size = report.size() + 1;
    if (size > maxBufferSize) {
        return EINVAL;
    }
    if (const int status = open(); status != 0) {
        return status;
    }
    std::vector<std::uint8_t> buffer(size); // report ID 0, then the report
    std::ranges::copy(report, buffer.begin() + 1);
    const int sent = transfer(HIDIOCSFEATURE(size), buffer.data());
    if (sent < 0) {
        return -sent;
    }
    return static_cast<std::size_t>(sent) == size ? 0 : EIO;
}

FeatureReportRead Hidraw::getFeatureReport(std::span<std::uint8_t> buffer)
{
    const std::size_t size = std::min(buffer.size() + 1, maxBufferSize);
    if (const int status = open(); status != 0) {
        return {.status = status};
    }
    std::vector<std::uint8_t> bytes(size);
    const int received = transfer(HIDIOCGFEATURE(size), bytes.data());
    if (received < 0) {
        return {.status = -received};
    }
    const std::size_t length = std::min(static_cast<std::size_t>(received), size);
    if (length == 0) {
        return {};
    }
    std::copy_n(bytes.begin() + 1, length - 1, buffer.begin());
    return {.length = length - 1};
}

/// What the kernel returned, or a negative errno.
int Hidraw::transfer(unsigned long request, void *buffer)
{
    int result = -1;
    do {
        result = ::ioctl(m_file.get(), request, buffer);
    } while (result < 0 && errno == EINTR);
    return result < 0 ? -errno : result;
}

int Hidraw::beginExchange()
{
    const int status = open();
    return status != 0 ? status : takeExchange(m_file.get(), *m_sleeper);
}

void Hidraw::endExchange()
{
    releaseExchange(m_file.get());
}

HidrawNodes::HidrawNodes(std::shared_ptr<Sleeper> sleeper) : m_sleeper(std::move(sleeper)) {}

std::shared_ptr<Hidraw> HidrawNodes::node(const std::string &attach, const std::string &path,
                                          Hidraw::Identity identity)
{
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_nodes, [](const auto &entry) { return entry.second.expired(); });
    auto &known = m_nodes[attach];
    auto node = known.lock();
    if (!node || node->hasFailed()) {
        node = std::make_shared<Hidraw>(path, identity, m_sleeper);
        known = node;
    }
    return node;
}

} // namespace kelmoth
