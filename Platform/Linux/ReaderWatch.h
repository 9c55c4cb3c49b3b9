#pragma once

#include "Platform/FileDescriptor.h"

#include <QFuture>
#include <QPromise>
#include <QSocketNotifier>

#include <memory>

namespace kelmoth {

/// Notices when nobody reads any more what is written to a descriptor: a pipe, a socket or a terminal. Sleeps
/// until then. Main thread.
class ReaderWatch {
public:
    /// The descriptor stays the caller's. Of a file, which has no reader, nothing is noticed.
    explicit ReaderWatch(int descriptor);

    /// Finished once the reader has gone, or `end` is called.
    QFuture<void> ended() const { return m_end.future(); }
    void end();

private:
    FileDescriptor m_hangUp; ///< becomes readable when the reader goes
    std::unique_ptr<QSocketNotifier> m_reader;
    QPromise<void> m_end;
};

} // namespace kelmoth
