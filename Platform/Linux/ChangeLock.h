#pragma once

#include "Platform/FileDescriptor.h"

#include <QCoroTask>

#include <chrono>
#include <optional>
#include <string>

namespace kelmoth {

/// Keeps the user's other processes from changing settings while this one does: the mouse takes all DPI
/// stages in one command, so of two processes that read, change one and write, the later would undo the
/// earlier. The kernel ends the lock with the object or its process. Main thread.
class ChangeLock {
public:
    static constexpr std::chrono::seconds limit{30};

    /// Waits for the lock, at most the limit, while the event loop runs. None once it is taken, else why it
    /// could not be.
    QCoro::Task<std::optional<std::string>> take();

private:
    FileDescriptor m_file;
};

} // namespace kelmoth
