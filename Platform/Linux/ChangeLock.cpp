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

/// Shorter than a process start: a waiting process comes before one that is started later.
constexpr std::chrono::milliseconds lockPollInterval{5};

constexpr const char *fileName = "com.kelmoth.app.set.lock";

/// Beside the tray program's lock: the same for all processes of the user, also without a session, and not
/// writable by a confined program. The temporary directory when the home is not writable; files there may
/// belong to anyone.
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
