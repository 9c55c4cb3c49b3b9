#include "Platform/Linux/AutostartEntry.h"

#include "Platform/Linux/DesktopEntry.h"
#include "Platform/Log.h"
#include "Platform/RegularFile.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <array>
#include <cerrno>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace kelmoth {

namespace {

/// Removes a link, and a regular file too if allowed. 0, or errno.
int makeWay(const std::string &path, bool mayFileGo)
{
    struct stat info{};
    if (::lstat(path.c_str(), &info) != 0) {
        return errno == ENOENT ? 0 : errno;
    }
    if (S_ISREG(info.st_mode) && !mayFileGo) {
        return 0;
    }
    if (!S_ISREG(info.st_mode) && !S_ISLNK(info.st_mode)) {
        return S_ISDIR(info.st_mode) ? EISDIR : EEXIST;
    }
    return ::unlink(path.c_str()) == 0 || errno == ENOENT ? 0 : errno;
}

int writeEntry(const QString &programPath)
{
    if (::access(QFile::encodeName(programPath).constData(), X_OK) != 0) {
        return errno;
    }
    std::error_code failure;
    std::filesystem::create_directories(QFile::encodeName(autostartDirectory()).toStdString(), failure);
    if (failure) {
        return failure.value();
    }
    const auto path = QFile::encodeName(autostartEntryPath()).toStdString();
    const int obstacle = makeWay(path, false);
    // Nothing depends on the data being on the disk.
    return obstacle != 0 ? obstacle
                         : tryReplaceRegularFile(path, DesktopEntry::autostarting(programPath).toStdString(),
                                                 {.mode = 0644, .waitsForDisk = false});
}

/// The settings program of one desktop, by its name in XDG_CURRENT_DESKTOP.
struct AutostartSettings {
    const char *desktop;
    const char *command; ///< words without quotes
};

/// The commands of one desktop are tried in this order.
constexpr std::array settingsOfDesktops{
    AutostartSettings{"KDE", "systemsettings kcm_autostart"},
    AutostartSettings{"KDE", "systemsettings5 kcm_autostart"},
    AutostartSettings{"KDE", "kcmshell6 kcm_autostart"},
    AutostartSettings{"KDE", "kcmshell5 kcm_autostart"},
    AutostartSettings{"XFCE", "xfce4-session-settings"},
    AutostartSettings{"MATE", "mate-session-properties"},
    AutostartSettings{"X-Cinnamon", "cinnamon-settings startup"},
    AutostartSettings{"LXQt", "lxqt-config-session"},
    AutostartSettings{"LXDE", "lxsession-edit"},
    AutostartSettings{"Budgie", "budgie-desktop-settings"},
    AutostartSettings{"GNOME", "gnome-session-properties"},
    AutostartSettings{"GNOME", "gnome-tweaks"},
};

/// Starts a detached program; false when none has that name.
bool start(const QString &name, const QStringList &arguments)
{
    const auto program = QStandardPaths::findExecutable(name);
    return !program.isEmpty() && QProcess::startDetached(program, arguments);
}

int openSettings()
{
    const auto desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'));
    for (const auto &desktop : desktops) {
        for (const auto &row : settingsOfDesktops) {
            auto words = QString::fromLatin1(row.command).split(QLatin1Char(' '));
            const auto name = words.takeFirst();
            if (desktop == QLatin1String(row.desktop) && start(name, words)) {
                return 0;
            }
        }
    }
    QDir().mkpath(autostartDirectory());
    if (!start(QStringLiteral("xdg-open"), {autostartDirectory()})) {
        log("⚠️ Nothing here can open %s", qUtf8Printable(autostartDirectory()));
        return ENOENT;
    }
    return 0;
}

} // namespace

QString autostartDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/autostart");
}

QString autostartEntryPath()
{
    return autostartDirectory() + QStringLiteral("/com.kelmoth.app.desktop");
}

int performAutostart(AutostartRequest request, const QString &programPath)
{
    switch (request) {
    case AutostartRequest::registerEntry:
        return writeEntry(programPath);
    case AutostartRequest::unregisterEntry:
        return makeWay(QFile::encodeName(autostartEntryPath()).toStdString(), true);
    case AutostartRequest::openSettings:
        return openSettings();
    }
    return EINVAL; // the byte came from another process
}

} // namespace kelmoth
