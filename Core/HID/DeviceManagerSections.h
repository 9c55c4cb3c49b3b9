#pragma once

#include "Core/HID/DeviceManager.h"

#include <QPointer>

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

/// A write to the mouse, from its start to its end on whatever way. A full read that was asked for meanwhile
/// follows it.
class DeviceManager::WritingSection {
public:
    explicit WritingSection(DeviceManager *manager) : m_manager(manager) { m_manager->m_isWriting = true; }
    ~WritingSection()
    {
        if (m_manager) {
            m_manager->m_isWriting = false;
            m_manager->runPendingRefresh();
        }
    }
    WritingSection(const WritingSection &) = delete;
    WritingSection &operator=(const WritingSection &) = delete;

private:
    QPointer<DeviceManager> m_manager;
};

} // namespace kelmoth
