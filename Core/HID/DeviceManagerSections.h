#pragma once

#include "Core/HID/DeviceManager.h"

#include <QPointer>

#include <functional>

namespace kelmoth {

/// A read of the mouse, from its start to its end on whatever way.
class DeviceManager::SyncingSection {
public:
    explicit SyncingSection(DeviceManager *manager) : m_manager(manager) { m_manager->setIsSyncing(true); }
    ~SyncingSection()
    {
        if (m_manager) {
            m_manager->setIsSyncing(false);
        }
    }
    SyncingSection(const SyncingSection &) = delete;
    SyncingSection &operator=(const SyncingSection &) = delete;

private:
    QPointer<DeviceManager> m_manager;
};

/// A write to the mouse, from its start to its end on whatever way. A writer reaches the mouse and the
/// manager through it alone: the manager may go, and the mouse may change, during each command.
class DeviceManager::WritingSection {
public:
    WritingSection(DeviceManager *manager, RazerDevice device);
    /// Starts the full read that was asked for meanwhile.
    ~WritingSection();
    WritingSection(const WritingSection &) = delete;
    WritingSection &operator=(const WritingSection &) = delete;

    /// Sends one command, if the manager is there. The accepted answer; none without one.
    QCoro::Task<std::optional<Data>> send(RazerCommand command);

    /// Whether the manager is there, with this mouse as the chosen one.
    bool isCurrent() const;

    /// Ends the write. What the mouse `accepted` is changed in the published settings and saved; otherwise
    /// the result says why not, and with `failure` what the user is told. Nothing is done when the write is
    /// no longer current.
    WriteResult conclude(bool accepted, const std::string &failure,
                         const std::function<void(DeviceState &)> &change = {});

private:
    QPointer<DeviceManager> m_manager;
    const RazerDevice m_device;
    bool m_isUnanswered = false; ///< a command was
};

} // namespace kelmoth
