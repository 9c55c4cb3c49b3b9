#pragma once

#include "Platform/Simulated/SimulatedMouse.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>

namespace kelmoth {

/// What the kernel does on one hidraw node. Any thread.
class MockHidraw {
public:
    MockHidraw(std::shared_ptr<SimulatedMouse> mouse, std::uint16_t interface);

    /// Performs an ioctl; `argument` is what its argument points to. Its result, or a negative errno.
    int ioctl(unsigned long request, std::span<std::uint8_t> argument);

    std::atomic<bool> isGone = false;         ///< the device was removed while the node was open
    std::atomic<bool> isNextWriteCut = false; ///< the next report that goes well counts a byte less
    std::atomic<std::uint16_t> productID;     ///< of the device that has the node now

private:
    const std::shared_ptr<SimulatedMouse> m_mouse;
    const std::uint16_t m_interface;
};

} // namespace kelmoth
