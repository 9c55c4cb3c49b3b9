#include "Platform/Linux/AutostartLoginItem.h"

#include "Platform/Linux/DesktopEntry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <system_error>
#include <vector>

namespace kelmoth {

namespace {

/// The error number as a message for the user.
AutostartLoginItem::Answer textOf(LoginItemService::Done done)
{
    return [done = std::move(done)](int failure) {
        done(failure == 0 ? std::nullopt : std::optional(std::generic_category().message(failure)));
    };
}

/// Whether `path` is below `directory`, as given or with links resolved.
bool isBelow(const QString &path, const QString &directory)
{
    const auto resolved = QFileInfo(directory).canonicalFilePath();
    return path.startsWith(directory + QLatin1Char('/')) ||
           (!resolved.isEmpty() && path.startsWith(resolved + QLatin1Char('/')));
}

/// Whether a file lies in a CMake build directory.
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

} // namespace

AutostartLoginItem::AutostartLoginItem(const QString &programPath)
    : AutostartLoginItem(programPath, [programPath](AutostartRequest request, const Answer &answer) {
          const int failure = performAutostart(request, programPath);
          if (answer) {
              answer(failure);
          }
      })
{
}

AutostartLoginItem::AutostartLoginItem(QString programPath, Ask ask)
    : m_programPath(std::move(programPath)), m_ask(std::move(ask))
{
}

LoginItemStatus AutostartLoginItem::status() const
{
    const QFileInfo file(autostartEntryPath());
    if (!file.exists() && !file.isSymLink()) {
        return LoginItemStatus::notRegistered;
    }
    const auto entry = DesktopEntry::read(autostartEntryPath());
    // An entry that only switches off needs no program.
    if (!entry || (!entry->startsAProgram() && (entry->namesAProgram() || !entry->isSwitchedOff()))) {
        return LoginItemStatus::notFound;
    }
    return entry->isSwitchedOff() ? LoginItemStatus::requiresApproval : LoginItemStatus::enabled;
}

void AutostartLoginItem::registerItem(Done done)
{
    m_ask(AutostartRequest::registerEntry, textOf(std::move(done)));
}

void AutostartLoginItem::unregisterItem(Done done)
{
    m_ask(AutostartRequest::unregisterEntry, textOf(std::move(done)));
}

void AutostartLoginItem::openLoginItemsSettings()
{
    m_ask(AutostartRequest::openSettings, nullptr);
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
