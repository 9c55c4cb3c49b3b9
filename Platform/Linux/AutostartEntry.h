#pragma once

#include <QString>

namespace kelmoth {

/// What can be asked for of what starts at login.
enum class AutostartRequest : char { registerEntry, unregisterEntry, openSettings };

/// Where the entries of what starts at login are: `autostart` in the user's configuration directory.
QString autostartDirectory();

/// Our one entry there.
QString autostartEntryPath();

/// Does what is asked for; `programPath` is the absolute path by which the program is to be started, links
/// and all. 0 on success, else errno. Needs no application object.
/// - `registerEntry` writes the entry anew, as a whole: it is the old one or the new one at any moment;
/// - `unregisterEntry` removes it, if it is there;
/// - `openSettings` opens the settings of the desktop that runs; where none are known, the folder.
///
/// What is in the entry's place is replaced or removed when it is a regular file or a link, which is not
/// followed; anything else is left alone.
int performAutostart(AutostartRequest request, const QString &programPath);

} // namespace kelmoth
