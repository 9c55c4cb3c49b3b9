#include "Platform/Linux/RunningProcess.h"

#include "Platform/FileDescriptor.h"

#include <cerrno>
#include <csignal>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace kelmoth {

namespace {

/// A descriptor refers to the same process even when its ID is reused.
FileDescriptor handleOf(std::int64_t process)
{
    return FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, static_cast<pid_t>(process), 0U)));
}

/// Whether the process ends in time; true for a zombie.
bool ends(const FileDescriptor &process, std::chrono::milliseconds timeout)
{
    pollfd ending{.fd = process.get(), .events = POLLIN, .revents = 0};
    return ::poll(&ending, 1, static_cast<int>(timeout.count())) == 1;
}

} // namespace

bool hasEnded(std::int64_t process)
{
    // Not by kill(): a confined program may not send signals.
    const auto handle = handleOf(process);
    return handle ? ends(handle, {}) : errno == ESRCH;
}

EndOfProcess endProcess(std::int64_t process, std::chrono::milliseconds timeout)
{
    const auto handle = handleOf(process);
    if (!handle || ::syscall(SYS_pidfd_send_signal, handle.get(), SIGTERM, nullptr, 0U) != 0) {
        return EndOfProcess::refused;
    }
    return ends(handle, timeout) ? EndOfProcess::ended : EndOfProcess::stillRunning;
}

} // namespace kelmoth
