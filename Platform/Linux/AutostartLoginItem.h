#pragma once

#include "Platform/LoginItemService.h"

#include <QString>

#include <functional>

namespace kelmoth {

/// Where the entries of what starts at login are: `autostart` in the user's configuration directory.
QString autostartDirectory();

/// Opens the settings of the desktop that runs for what starts at login; where none are known, the folder.
/// Needs no application object.
void openAutostartSettings();

/// Launch at login by an XDG autostart entry, "com.kelmoth.app.desktop" in that directory. The entry is
/// looked at anew each time: the user and the desktop change it too. Main thread.
class AutostartLoginItem : public LoginItemService {
public:
    /// `programPath` is the absolute path by which the program is to be started, links and all.
    /// `openSettings` does what `openLoginItemsSettings` is asked for.
    explicit AutostartLoginItem(QString programPath,
                                std::function<void()> openSettings = openAutostartSettings);

    /// `enabled` for an entry that starts a program, `requiresApproval` for one that is switched off in the
    /// desktop's own settings, `notFound` for one that cannot be read or starts nothing.
    LoginItemStatus status() const override;

    /// Writes the entry anew, as a whole: it is the old one or the new one at any moment.
    std::optional<std::string> registerItem() override;
    std::optional<std::string> unregisterItem() override;

    void openLoginItemsSettings() override { m_openSettings(); }

    /// Whether the program, links resolved, lies where programs are installed (/Applications, /usr, /opt,
    /// ~/.local) and not in a directory in which it is built.
    bool isInApplicationsFolder() const override;

    std::string bundlePath() const override { return m_programPath.toStdString(); }

private:
    QString m_programPath;
    std::function<void()> m_openSettings;
};

/// The path by which the running program was started, links not resolved: from its first argument, where
/// that leads to this program, else the program's own.
QString startedProgramPath(const char *firstArgument);

} // namespace kelmoth
