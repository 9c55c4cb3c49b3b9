#pragma once

#include "Core/HID/DeviceManager.h"

#include <QCoroTask>
#include <QObject>

#include <functional>

namespace kelmoth {

/// What the pages of the panel have in common: view state with a life of its own, and writes that run one at
/// a time. Main thread.
///
/// A page is begun anew (`reset`) when its tab is picked, and shown (`shown`) then and each time the panel
/// opens on it; ContentModel calls both.
class TabModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isApplying READ isApplying NOTIFY isApplyingChanged)
    Q_PROPERTY(bool isEnabled READ isEnabled NOTIFY isEnabledChanged)

public:
    /// Gives the view state its first values. A write that runs goes on, but is no longer this page's.
    virtual void reset();

    /// Takes over what is to be seen at a showing.
    virtual void shown() = 0;

    /// Whether a write that was started on this page runs.
    bool isApplying() const { return m_isApplying; }

    /// Whether the controls that write to the mouse may be used: no write of this page runs, nor a read.
    bool isEnabled() const { return !m_isApplying && !m_deviceManager.isSyncing(); }

Q_SIGNALS:
    void isApplyingChanged();
    void isEnabledChanged();

protected:
    explicit TabModel(DeviceManager &deviceManager, QObject *parent);

    using Write = std::function<QCoro::Task<bool>(DeviceManager &)>;
    /// Whether the mouse took it, and whether the page is still in the life in which that began.
    using Finished = std::function<void(bool ok, bool isSamePage)>;

    /// Runs a write from the next turn of the event loop on; nothing while another one runs. `finished` is
    /// called at its end, while the page still counts as applying.
    void perform(Write write, Finished finished);

    DeviceManager &deviceManager() const { return m_deviceManager; }

    /// Which life of the page this is: another number after each reset.
    int life() const { return m_life; }

private:
    QCoro::Task<void> run(Write write, Finished finished, int life);
    void setIsApplying(bool isApplying);

    DeviceManager &m_deviceManager;
    bool m_isApplying = false;
    int m_life = 0; ///< counts the resets
};

} // namespace kelmoth
