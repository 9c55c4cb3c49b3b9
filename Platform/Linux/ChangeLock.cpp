#include "Platform/Linux/ChangeLock.h"

#include "Platform/RegularFile.h"

#include <QCoroTimer>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <system_error>
#include <utility>

namespace kelmoth {

namespace {

/// Shorter than it takes to start a process: who waits gets its turn before one that is started anew.
constexpr std::chrono::milliseconds lockPollInterval{5};

constexpr const char *fileName = "com.kelmoth.app.set.lock";

/// Beside the lock of the program in the tray: one place for all processes of the user, also for those that
/// have no session, and one where a confined program can plant nothing. Without a home that can be written it
/// is the directory for temporary files; what lies there may be anybody's.
FileDescriptor openLockFile(std::string *obstacle)
{
    const auto home = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    QDir().mkpath(home);
    const auto open = [obstacle](const QString &directory, const std::string &name) {
        return openRegularFile(QFile::encodeName(directory).toStdString() + '/' + name, O_RDWR | O_CREAT,
                               {.isOwn = true}, obstacle);
    };
    auto file = open(home, fileName);
    return file ? std::move(file) : open(QDir::tempPath(), fileName + ('.' + std::to_string(::geteuid())));
}

} // namespace

QCoro::Task<std::optional<std::string>> ChangeLock::take()
{
    std::string obstacle;
    m_file = openLockFile(&obstacle);
    if (!m_file) {
        co_return "cannot lock out other changes: " + obstacle;
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
        co_await QCoro::sleepFor(lockPollInterval);
    }
    co_return std::nullopt;
}

} // namespace kelmoth
