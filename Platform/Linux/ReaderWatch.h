#pragma once

#include "Platform/FileDescriptor.h"

#include <QFuture>
#include <QPromise>
#include <QSocketNotifier>

#include <memory>

namespace kelmoth {

/// Detects that the reader of a descriptor is gone: of a pipe, a socket or a terminal. Sleeps until then.
/// Main thread.
class ReaderWatch {
public:
    /// The descriptor stays the caller's. Files have no reader: nothing is detected for them.
    explicit ReaderWatch(int descriptor);

    /// Finishes once the reader is gone or `end` is called.
    QFuture<void> ended() const { return m_end.future(); }
    void end();

private:
    FileDescriptor m_hangUp; ///< becomes readable when the reader goes
    std::unique_ptr<QSocketNotifier> m_reader;
    QPromise<void> m_end;
};

} // namespace kelmoth
