#pragma once

#include "Platform/Linux/AutostartEntry.h"
#include "Platform/LoginItemService.h"

#include <QString>

#include <functional>

namespace kelmoth {

/// Launch at login by an XDG autostart entry, "com.kelmoth.app.desktop" in that directory. The entry is read
/// on every call: the user and the desktop change it too. Main thread.
class AutostartLoginItem : public LoginItemService {
public:
    /// Called with 0, or an errno.
    using Answer = std::function<void(int failure)>;
    /// Makes a request; `answer` may be null.
    using Ask = std::function<void(AutostartRequest request, Answer answer)>;

    /// `programPath` is the absolute path to start, links not resolved. This process carries out requests
    /// before they return.
    explicit AutostartLoginItem(const QString &programPath);

    /// For a process whose requests another process carries out, which knows the path itself.
    AutostartLoginItem(QString programPath, Ask ask);

    /// `enabled` for an entry that starts a program, `requiresApproval` for one that is switched off in the
    /// desktop's own settings, `notFound` for one that cannot be read or starts nothing.
    LoginItemStatus status() const override;

    void registerItem(Done done) override;
    void unregisterItem(Done done) override;
    void openLoginItemsSettings() override;

    /// Whether the program, links resolved, lies where programs are installed (/Applications, /usr, /opt,
    /// ~/.local) and not in a build directory.
    bool isInApplicationsFolder() const override;

    std::string bundlePath() const override { return m_programPath.toStdString(); }

private:
    QString m_programPath;
    Ask m_ask;
};

/// The path by which the running program was started, links not resolved: its first argument if that leads to
/// this program, else the path of its executable.
QString startedProgramPath(const char *firstArgument);

} // namespace kelmoth
