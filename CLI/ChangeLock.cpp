#include "CLI/ChangeLock.h"

#include <QCoroTimer>
#include <QDeadlineTimer>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>

namespace kelmoth {

namespace {

/// Shorter than it takes to start a process: who waits gets its turn before one that is started anew.
constexpr std::chrono::milliseconds pollInterval{5};

constexpr const char *fileName = "com.kelmoth.app.set.lock";

/// Opens a lock file, which must be this user's own: in a directory of everyone's it may be anybody's.
FileDescriptor openOwn(const std::string &path)
{
    FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600));
    struct stat info{};
    if (file && (::fstat(file.get(), &info) != 0 || info.st_uid != ::geteuid() || !S_ISREG(info.st_mode))) {
        errno = EPERM;
        return {};
    }
    return file;
}

FileDescriptor openLockFile()
{
    const char *directory = std::getenv("XDG_RUNTIME_DIR");
    if (directory && *directory) {
        if (auto file = openOwn(std::string(directory) + '/' + fileName)) {
            return file;
        }
    }
    directory = std::getenv("TMPDIR");
    return openOwn(std::string(directory && *directory ? directory : "/tmp") + '/' + fileName + '.' +
                   std::to_string(::geteuid()));
}

} // namespace

QCoro::Task<std::optional<std::string>> ChangeLock::take()
{
    m_file = openLockFile();
    if (!m_file) {
        co_return "cannot lock out other changes: " + std::generic_category().message(errno);
    }
    const QDeadlineTimer deadline(limit);
    while (::flock(m_file.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) {
            co_return "cannot lock out other changes: " + std::generic_category().message(errno);
        }
        if (deadline.hasExpired()) {
            co_return "another kelmothctl is changing settings; it has not ended in " +
                std::to_string(limit.count()) + " seconds";
        }
        co_await QCoro::sleepFor(pollInterval);
    }
    co_return std::nullopt;
}

} // namespace kelmoth
