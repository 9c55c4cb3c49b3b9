#pragma once

#include "Platform/Linux/AutostartLoginItem.h"
#include "Platform/Linux/OutsideHelper.h"

#include <optional>
#include <string>

namespace kelmoth {

/// The bounds that the program sets itself. It reads the system, what the toolkit takes its looks from in the
/// user's home, and its own executable; it writes only its settings, its lock, its temporary files,
/// fontconfig's cache and device nodes, whose own permissions hold besides; it changes no other attribute of
/// a file than the mode of one that it has open, to 0600; it runs no other program and sends no signal to
/// one; and it has no sockets but those of this machine, unless its display is one across the network. Makes
/// the directories that it may write in, where they are missing.
///
/// Its entry in what starts at login is written by a process outside, which does that alone.
///
/// Made before there is any other thread and before anything else that it bounds. What the kernel cannot
/// refuse is left open, and everything works.
class Sandbox {
public:
    /// `identifier` is the program's, `lockFileName` that of its lock in the user's data directory,
    /// `programPath` the path that is registered for login.
    Sandbox(const std::string &identifier, const std::string &lockFileName, const QString &programPath);

    /// Has something done about what starts at login, from outside; `answer` is told from the event loop.
    /// Main thread.
    void askForAutostart(AutostartRequest request, AutostartLoginItem::Answer answer);

    /// Why the program is not confined, or not wholly; none when it is.
    const std::optional<std::string> &failure() const { return m_failure; }

private:
    OutsideHelper m_helper;
    std::optional<std::string> m_failure;
};

} // namespace kelmoth
