#include "Platform/Linux/ExchangeLock.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>

namespace kelmoth {

namespace {

constexpr std::chrono::milliseconds pollInterval{1};
constexpr int maxPolls = 2000;

/// 0, EAGAIN when another process holds the gate, or errno.
int lockGate(int fd, short type)
{
    struct ::flock range{};
    range.l_type = type;
    range.l_whence = SEEK_SET;
    range.l_start = 0;
    range.l_len = 1;
    if (::fcntl(fd, F_OFD_SETLK, &range) == 0) {
        return 0;
    }
    return errno == EACCES ? EAGAIN : errno;
}

/// 0, EAGAIN when another process holds the node, or errno.
int lockNode(int fd)
{
    return ::flock(fd, LOCK_EX | LOCK_NB) == 0 ? 0 : errno;
}

} // namespace

int takeExchange(int fd, Sleeper &sleeper)
{
    int polls = 0;
    const auto wait = [&](auto attempt) {
        int status = attempt();
        while ((status == EAGAIN || status == EINTR) && polls < maxPolls) {
            ++polls;
            sleeper.sleep(pollInterval);
            status = attempt();
        }
        return status == EAGAIN ? EBUSY : status;
    };

    if (const int status = wait([&] { return lockGate(fd, F_WRLCK); }); status != 0) {
        return status;
    }
    const int status = wait([&] { return lockNode(fd); });
    lockGate(fd, F_UNLCK);
    return status;
}

void releaseExchange(int fd)
{
    ::flock(fd, LOCK_UN);
}

} // namespace kelmoth
