#pragma once

#include "CLI/ChangeLock.h"
#include "CLI/Failure.h"
#include "CLI/Session.h"
#include "Core/HID/DeviceReader.h"

#include <QCoroTask>
#include <QFuture>
#include <QObject>
#include <QPromise>

#include <optional>

namespace kelmoth {

/// Waits for the full read with which a manager begins with a mouse. Main thread.
class FullRead : public QObject {
    Q_OBJECT

public:
    /// To be made before the event loop runs again after the manager was made: what happens earlier is
    /// missed.
    FullRead(const DeviceManager &manager, RazerDevice device);

    /// Finished once the mouse has been read, or is no longer the one that the manager has chosen.
    QFuture<void> finished() const { return m_promise.future(); }

private:
    void followDevice();
    void followReading();

    const DeviceManager &m_manager;
    const RazerDevice m_device;
    bool m_hasBegun = false;
    QPromise<void> m_promise;
};

/// Has the session's manager, which nobody has asked for yet, read all of its mouse, which is `device`. The
/// failure when the mouse goes meanwhile, or does not answer at all.
QCoro::Task<std::optional<Failure>> readFully(Session *session, RazerDevice device);

/// The same for a command that then changes settings: with nobody else changing any for as long as `lock`
/// lives, which is taken first.
QCoro::Task<std::optional<Failure>> readToChange(Session *session, RazerDevice device, ChangeLock *lock);

/// The settings that a manager holds after a full read, without those that the mouse did not answer for.
DeviceReading answeredSettings(const DeviceManager &manager, const UnansweredItems &unanswered);

} // namespace kelmoth
