#pragma once

#include "Platform/Simulated/SimulatedMouse.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <linux/hidraw.h>
#include <sys/ioctl.h>
#include <thread>

namespace kelmoth {

/// What the kernel does on one hidraw node. Any thread.
struct MockHidraw {
    const std::shared_ptr<SimulatedMouse> mouse;
    const std::uint16_t interface;
    std::atomic<std::uint16_t> productID = mouse->model().productID; ///< of the device that has the node now
    std::atomic<bool> isDenied = false; ///< nobody may open it; the kernel says so a call later than it would
    std::atomic<bool> isGone = false;   ///< the device was removed while the node was open
    std::atomic<bool> isNextWriteCut = false; ///< the next report that goes well counts a byte less
    std::atomic<int> interruptions = 0;       ///< how many signals come before the next report goes
    /// While set, each report's transfer hangs for so long and then fails with ETIMEDOUT.
    std::atomic<std::chrono::milliseconds> hang = std::chrono::milliseconds{0};
    std::atomic<int> hangs = 0; ///< how many such transfers have begun

    /// Performs an ioctl; `argument` is what its argument points to. Its result, or a negative errno.
    int ioctl(unsigned long request, std::span<std::uint8_t> argument)
    {
        if (isGone) {
            return -ENODEV;
        }
        if (isDenied) {
            return -EACCES;
        }
        if (request == HIDIOCGRAWINFO) {
            const ::hidraw_devinfo info{3, 0x1532, static_cast<__s16>(productID.load())};
            std::memcpy(argument.data(), &info, sizeof info);
            return 0;
        }
        if (const auto duration = hang.load(); duration.count() > 0) {
            ++hangs;
            std::this_thread::sleep_for(duration);
            return -ETIMEDOUT;
        }
        if (interruptions > 0) {
            --interruptions;
            return -EINTR;
        }
        // Reports begin with their ID, and 0 stands for none: it is not sent.
        if (argument.size() < 2 || argument[0] != 0) {
            return -EINVAL;
        }
        const auto report = argument.subspan(1);
        const bool isSet = request == HIDIOCSFEATURE(argument.size());
        const auto moved = isSet ? FeatureReportRead{mouse->setReport(interface, report), report.size()}
                                 : mouse->getReport(interface, report);
        const int cut = isSet && isNextWriteCut.exchange(false) ? 1 : 0;
        return moved.status != 0 ? -moved.status : static_cast<int>(moved.length) + 1 - cut;
    }
};

} // namespace kelmoth
