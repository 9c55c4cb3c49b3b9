#include "Platform/Linux/RunningProcess.h"

#include "Platform/FileDescriptor.h"

#include <csignal>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace kelmoth {

EndOfProcess endProcess(std::int64_t process, std::chrono::milliseconds patience)
{
    // By descriptor, which stays that process's when its number is given to another.
    const FileDescriptor handle(static_cast<int>(::syscall(SYS_pidfd_open, static_cast<pid_t>(process), 0U)));
    if (!handle || ::syscall(SYS_pidfd_send_signal, handle.get(), SIGTERM, nullptr, 0U) != 0) {
        return EndOfProcess::refused;
    }
    pollfd ending{.fd = handle.get(), .events = POLLIN, .revents = 0};
    return ::poll(&ending, 1, static_cast<int>(patience.count())) == 1 ? EndOfProcess::ended
                                                                       : EndOfProcess::stillRunning;
}

} // namespace kelmoth
