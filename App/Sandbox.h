#pragma once

#include "Platform/Linux/OutsideHelper.h"

#include <optional>
#include <string>

namespace kelmoth {

/// The bounds that the program sets itself. It reads the system and what the toolkit takes its looks from in
/// the user's home; it writes only its settings, its lock, its autostart entry, its temporary files and
/// device nodes, whose own permissions hold besides; it runs no other program and, unless its display is one
/// across the network, makes no TCP connection. Makes the directories that it may write in, where they are
/// missing.
///
/// Made before there is any other thread and before anything else that it bounds. Where the kernel cannot
/// confine, everything works unconfined.
class Sandbox {
public:
    /// `identifier` is the program's, `lockFileName` that of its lock in the user's data directory.
    Sandbox(const std::string &identifier, const std::string &lockFileName);

    /// Opens the desktop's settings for what starts at login, from outside.
    void openLoginItemsSettings() const { m_helper.ask(); }

    /// Why the program is not confined; none when it is.
    const std::optional<std::string> &failure() const { return m_failure; }

private:
    OutsideHelper m_helper;
    std::optional<std::string> m_failure;
};

} // namespace kelmoth
