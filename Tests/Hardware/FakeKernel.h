#pragma once

#include "Platform/Simulated/SimulatedMouse.h"

#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <string>

namespace kelmoth {

/// The kernel's side of one hidraw node, within this program: its `ioctl` replaces the system's for the
/// node, which is a real file with real locks. There is no other process and no library between, so that a
/// thread sanitizer sees all there is. One at a time.
class FakeKernel {
public:
    explicit FakeKernel(std::shared_ptr<SimulatedMouse> mouse);
    ~FakeKernel();
    FakeKernel(const FakeKernel &) = delete;
    FakeKernel &operator=(const FakeKernel &) = delete;

    std::string node() const { return m_directory.filePath(QStringLiteral("hidraw0")).toStdString(); }

    /// Called within each transfer, on its thread. Set while there are none.
    std::function<void()> onTransfer;

    /// Answers an ioctl as the kernel does: a result, or a negative errno.
    int handle(unsigned long request, void *argument);

private:
    const std::shared_ptr<SimulatedMouse> m_mouse;
    const QTemporaryDir m_directory;
};

} // namespace kelmoth
