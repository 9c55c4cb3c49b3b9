#pragma once

#include "Platform/FileDescriptor.h"

#include <QCoroTask>

#include <chrono>
#include <optional>
#include <string>

namespace kelmoth {

/// Locks out the user's other processes while this one changes settings: the mouse takes all DPI stages in
/// one command, so of two concurrent read-modify-write cycles the later would undo the earlier. The lock is
/// released with the object or its process. Main thread.
class ChangeLock {
public:
    static constexpr std::chrono::seconds limit{30};

    /// Waits for the lock without blocking the event loop, at most `limit`. None once it is taken, else the
    /// reason.
    QCoro::Task<std::optional<std::string>> take();

private:
    FileDescriptor m_file;
};

} // namespace kelmoth
