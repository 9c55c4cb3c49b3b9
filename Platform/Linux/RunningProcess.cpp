#include "Platform/Linux/RunningProcess.h"

#include "Platform/FileDescriptor.h"

#include <cerrno>
#include <csignal>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace kelmoth {

namespace {

/// By descriptor, which stays that process's when its number is given to another.
FileDescriptor handleOf(std::int64_t process)
{
    return FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, static_cast<pid_t>(process), 0U)));
}

/// Whether it ends in time; also of one that has ended but whose parent has not noticed.
bool ends(const FileDescriptor &process, std::chrono::milliseconds patience)
{
    pollfd ending{.fd = process.get(), .events = POLLIN, .revents = 0};
    return ::poll(&ending, 1, static_cast<int>(patience.count())) == 1;
}

} // namespace

bool hasEnded(std::int64_t process)
{
    // Not by a signal, which a confined program may not send.
    const auto handle = handleOf(process);
    return handle ? ends(handle, {}) : errno == ESRCH;
}

EndOfProcess endProcess(std::int64_t process, std::chrono::milliseconds patience)
{
    const auto handle = handleOf(process);
    if (!handle || ::syscall(SYS_pidfd_send_signal, handle.get(), SIGTERM, nullptr, 0U) != 0) {
        return EndOfProcess::refused;
    }
    return ends(handle, patience) ? EndOfProcess::ended : EndOfProcess::stillRunning;
}

} // namespace kelmoth
