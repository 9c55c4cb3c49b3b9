#pragma once

#include "Platform/Linux/AutostartEntry.h"
#include "Platform/LoginItemService.h"

#include <QString>

#include <functional>

namespace kelmoth {

/// Launch at login by an XDG autostart entry, "com.kelmoth.app.desktop" in that directory. The entry is
/// looked at anew each time: the user and the desktop change it too. Main thread.
class AutostartLoginItem : public LoginItemService {
public:
    /// Told 0, or the errno of what could not be done.
    using Answer = std::function<void(int failure)>;
    /// Asks for something; `answer` may be null.
    using Ask = std::function<void(AutostartRequest request, Answer answer)>;

    /// `programPath` is the absolute path by which the program is to be started, links and all. What is asked
    /// for is done by this process, before the request returns.
    explicit AutostartLoginItem(const QString &programPath);

    /// For a process that has what is asked for done by another, which knows the path itself.
    AutostartLoginItem(QString programPath, Ask ask);

    /// `enabled` for an entry that starts a program, `requiresApproval` for one that is switched off in the
    /// desktop's own settings, `notFound` for one that cannot be read or starts nothing.
    LoginItemStatus status() const override;

    void registerItem(Done done) override;
    void unregisterItem(Done done) override;
    void openLoginItemsSettings() override;

    /// Whether the program, links resolved, lies where programs are installed (/Applications, /usr, /opt,
    /// ~/.local) and not in a directory in which it is built.
    bool isInApplicationsFolder() const override;

    std::string bundlePath() const override { return m_programPath.toStdString(); }

private:
    QString m_programPath;
    Ask m_ask;
};

/// The path by which the running program was started, links not resolved: from its first argument, where
/// that leads to this program, else the program's own.
QString startedProgramPath(const char *firstArgument);

} // namespace kelmoth
