#pragma once

#include "Platform/Simulated/SimulatedMouse.h"

#include <atomic>
#include <cerrno>
#include <memory>
#include <utility>

namespace kelmoth {

/// A program's open node of a simulated mouse. It belongs to one attach: it is dead once the mouse has been
/// pulled out, also when the mouse comes back. Any thread.
class SimulatedConnection {
public:
    SimulatedConnection(std::shared_ptr<SimulatedMouse> mouse, int attachment)
        : m_mouse(std::move(mouse)), m_attachment(attachment)
    {
    }

    SimulatedMouse &mouse() const { return *m_mouse; }
    int attachment() const { return m_attachment; }

    /// Whether the mouse has been attached throughout.
    bool isAlive() const { return m_mouse->isAttached() && m_mouse->attachment() == m_attachment; }

    /// Whether the mouse could be opened now: 0, or ENODEV or EACCES.
    int probe() const { return isAlive() ? m_mouse->openStatus() : ENODEV; }

    /// Opens the mouse, once: what is open stays open whatever becomes of the permission. 0, or errno.
    int open()
    {
        if (!m_isOpen || !isAlive()) {
            const int status = probe();
            m_isOpen = status == 0;
            return status;
        }
        return 0;
    }

    int setReport(std::uint16_t wIndex, std::span<const std::uint8_t> report)
    {
        return isAlive() ? m_mouse->setReport(wIndex, report) : ENODEV;
    }

    FeatureReportRead getReport(std::uint16_t wIndex, std::span<std::uint8_t> buffer)
    {
        return isAlive() ? m_mouse->getReport(wIndex, buffer) : FeatureReportRead{ENODEV, 0};
    }

private:
    std::shared_ptr<SimulatedMouse> m_mouse;
    int m_attachment;
    std::atomic<bool> m_isOpen = false;
};

} // namespace kelmoth
