#pragma once

#include <QString>

namespace kelmoth {

/// Requests about the program's entry among those that start at login.
enum class AutostartRequest : char { registerEntry, unregisterEntry, openSettings };

/// The XDG autostart directory: `autostart` in the user's configuration directory.
QString autostartDirectory();

/// File name of the program's entry there.
QString autostartEntryPath();

/// Carries out a request; `programPath` is the absolute path to start, links not resolved. 0 on success, else
/// errno. Needs no application object.
/// - `registerEntry` replaces the entry atomically;
/// - `unregisterEntry` removes it if it exists;
/// - `openSettings` opens the running desktop's settings, or the directory where none are known.
///
/// A regular file or a link at the entry's path is replaced or removed, the link not followed; anything else
/// is left alone.
int performAutostart(AutostartRequest request, const QString &programPath);

} // namespace kelmoth
