#pragma once

#include "Core/HID/DeviceManager.h"

#include <QPointer>

#include <functional>

namespace kelmoth {

/// Marks a read of the mouse as running for its own lifetime.
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

/// Marks a write to the mouse as running for its own lifetime. Writers access the mouse and the manager only
/// through it: during each command the manager may be destroyed and the chosen mouse may change.
class DeviceManager::WritingSection {
public:
    WritingSection(DeviceManager *manager, RazerDevice device);
    /// Starts the deferred full read.
    ~WritingSection();
    WritingSection(const WritingSection &) = delete;
    WritingSection &operator=(const WritingSection &) = delete;

    /// Sends one command, if the manager still exists. The accepted answer; none without one.
    QCoro::Task<std::optional<Data>> send(RazerCommand command);

    /// Whether the manager still exists and this mouse is still the chosen one.
    bool isCurrent() const;

    /// Ends the write. When `accepted`, applies `change` to the published settings and saves them; otherwise
    /// the result holds the reason and the message `failure`. Does nothing when the write is no longer
    /// current.
    WriteResult conclude(bool accepted, const std::string &failure,
                         const std::function<void(DeviceState &)> &change = {});

private:
    QPointer<DeviceManager> m_manager;
    const RazerDevice m_device;
    bool m_isUnanswered = false; ///< a command went unanswered
};

} // namespace kelmoth
