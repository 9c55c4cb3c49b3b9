#pragma once

#include "Platform/Linux/AutostartLoginItem.h"
#include "Platform/Linux/OutsideHelper.h"

#include <optional>
#include <string>

namespace kelmoth {

/// The program's sandbox. The program reads the system, the fonts and themes in the user's home, and its own
/// executable. It writes only its settings, its lock, its temporary files, fontconfig's cache and device
/// nodes, subject to their permissions. It changes no file attribute except the mode of an open file, to
/// 0600. It executes no other program and sends no signals to others. It uses no network sockets unless its
/// display is remote. Creates the writable directories if they are missing.
///
/// Its autostart entry is written by a helper process outside the sandbox, which does only that.
///
/// Create it before any other thread and before anything that it restricts. What the kernel cannot restrict
/// stays allowed.
class Sandbox {
public:
    /// `identifier` is the program's, `lockFileName` the name of its lock in the user's data directory,
    /// `programPath` the path to register for login.
    Sandbox(const std::string &identifier, const std::string &lockFileName, const QString &programPath);

    /// Makes a request to the helper about the autostart entry; `answer` is called from the event loop. Main
    /// thread.
    void askForAutostart(AutostartRequest request, AutostartLoginItem::Answer answer);

    /// Why the program is not, or only partly, confined; none when it is.
    const std::optional<std::string> &failure() const { return m_failure; }

private:
    OutsideHelper m_helper;
    std::optional<std::string> m_failure;
};

} // namespace kelmoth
