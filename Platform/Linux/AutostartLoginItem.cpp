#include "Platform/Linux/AutostartLoginItem.h"

#include "Platform/Linux/DesktopEntry.h"
#include "Platform/Log.h"
#include "Platform/RegularFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace kelmoth {

namespace {

QString entryPath()
{
    return autostartDirectory() + QStringLiteral("/com.kelmoth.app.desktop");
}

std::string errorText(int number)
{
    return std::generic_category().message(number);
}

/// Whether `path` is below `directory`, under the name that is given or under the one it leads to.
bool isBelow(const QString &path, const QString &directory)
{
    const auto resolved = QFileInfo(directory).canonicalFilePath();
    return path.startsWith(directory + QLatin1Char('/')) ||
           (!resolved.isEmpty() && path.startsWith(resolved + QLatin1Char('/')));
}

/// Whether a file lies in a directory that CMake builds in.
bool isInBuildTree(const QString &path)
{
    QDir directory = QFileInfo(path).dir();
    do {
        if (directory.exists(QStringLiteral("CMakeCache.txt"))) {
            return true;
        }
    } while (directory.cdUp());
    return false;
}

/// The settings of one desktop, as it calls itself in XDG_CURRENT_DESKTOP.
struct AutostartSettings {
    const char *desktop;
    const char *command; ///< words without quotes
};

/// In the order in which the commands of one desktop are tried.
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

/// Starts a program that outlives this one; false when there is none of that name.
bool start(const QString &name, const QStringList &arguments)
{
    const auto program = QStandardPaths::findExecutable(name);
    return !program.isEmpty() && QProcess::startDetached(program, arguments);
}

} // namespace

QString autostartDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/autostart");
}

void openAutostartSettings()
{
    const auto desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'));
    for (const auto &desktop : desktops) {
        for (const auto &row : settingsOfDesktops) {
            auto words = QString::fromLatin1(row.command).split(QLatin1Char(' '));
            const auto name = words.takeFirst();
            if (desktop == QLatin1String(row.desktop) && start(name, words)) {
                return;
            }
        }
    }
    QDir().mkpath(autostartDirectory());
    if (!start(QStringLiteral("xdg-open"), {autostartDirectory()})) {
        log("⚠️ Nothing here can open %s", qUtf8Printable(autostartDirectory()));
    }
}

AutostartLoginItem::AutostartLoginItem(QString programPath, std::function<void()> openSettings)
    : m_programPath(std::move(programPath)), m_openSettings(std::move(openSettings))
{
}

LoginItemStatus AutostartLoginItem::status() const
{
    const QFileInfo file(entryPath());
    if (!file.exists() && !file.isSymLink()) {
        return LoginItemStatus::notRegistered;
    }
    const auto entry = DesktopEntry::read(entryPath());
    // An entry that only switches off needs no program.
    if (!entry || (!entry->startsAProgram() && (entry->namesAProgram() || !entry->isSwitchedOff()))) {
        return LoginItemStatus::notFound;
    }
    return entry->isSwitchedOff() ? LoginItemStatus::requiresApproval : LoginItemStatus::enabled;
}

std::optional<std::string> AutostartLoginItem::registerItem()
{
    if (::access(QFile::encodeName(m_programPath).constData(), X_OK) != 0) {
        return errorText(errno);
    }
    std::error_code failure;
    std::filesystem::create_directories(QFile::encodeName(autostartDirectory()).toStdString(), failure);
    if (failure) {
        return failure.message();
    }
    // The main thread does not wait for the disk.
    return replaceRegularFile(QFile::encodeName(entryPath()).toStdString(),
                              DesktopEntry::autostarting(m_programPath).toStdString(),
                              {.mode = 0644, .waitsForDisk = false});
}

std::optional<std::string> AutostartLoginItem::unregisterItem()
{
    if (::unlink(QFile::encodeName(entryPath()).constData()) != 0 && errno != ENOENT) {
        return errorText(errno);
    }
    return std::nullopt;
}

bool AutostartLoginItem::isInApplicationsFolder() const
{
    const auto path = QFileInfo(m_programPath).canonicalFilePath();
    const std::vector<QString> directories{QStringLiteral("/Applications"), QStringLiteral("/usr"),
                                           QStringLiteral("/opt"),
                                           QDir::homePath() + QStringLiteral("/.local")};
    return !path.isEmpty() && !isInBuildTree(path) &&
           std::ranges::any_of(directories,
                               [&path](const auto &directory) { return isBelow(path, directory); });
}

QString startedProgramPath(const char *firstArgument)
{
    const auto real = QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
    const auto word = QFile::decodeName(firstArgument);
    const auto path = word.contains(QLatin1Char('/'))
                          ? QDir::cleanPath(QDir::current().absoluteFilePath(word))
                          : QStandardPaths::findExecutable(word);
    return !path.isEmpty() && QFileInfo(path).canonicalFilePath() == real ? path : real;
}

} // namespace kelmoth
