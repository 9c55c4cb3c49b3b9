#pragma once

#include <QObject>
#include <QThread>

namespace kelmoth {

/// Ends a debug build whose caller runs on another thread than the one that the object belongs to.
inline void assertOwnThread([[maybe_unused]] const QObject &object)
{
    Q_ASSERT(object.thread() == QThread::currentThread());
}

} // namespace kelmoth
