#pragma once

#include "Platform/FileDescriptor.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kelmoth {

// How the programs read and replace files. Under a path there may be anything: a device, a FIFO whose other
// end nobody holds, a link that somebody has planted. Any thread.

/// Which files may be opened.
struct FileRules {
    bool followsLink = false; ///< a symbolic link at the end of the path stands for what it names
    bool isOwn = false;       ///< only one that belongs to the user of this process
};

/// Opens a regular file without ever waiting, with the flags of open(); O_CREAT makes one that only its owner
/// can read. None for anything else under the path; `obstacle` then says why.
FileDescriptor openRegularFile(const std::string &path, int flags, FileRules rules = {},
                               std::string *obstacle = nullptr);

/// All that is in a regular file; "" when nothing is there. None when it has more than `largest` bytes or
/// cannot be read; `obstacle` then says why.
std::optional<std::string> readRegularFile(const std::string &path, std::size_t largest, FileRules rules = {},
                                           std::string *obstacle = nullptr);

/// How a file comes to be.
struct Replacement {
    /// None: the mode of the file that was there; for a new one 0666, less the umask.
    std::optional<mode_t> mode = std::nullopt;
    bool waitsForDisk = true; ///< a power cut then leaves the old file or the new one
};

/// Puts a text in place of a regular file, or of nothing, as a whole: who reads meanwhile gets the old one.
/// No link is followed. None when it is done, else why not; what was there is then as it was.
std::optional<std::string> replaceRegularFile(const std::string &path, std::string_view text,
                                              const Replacement &how = {});

/// The same with 0, or the errno of the obstacle: EISDIR or EEXIST for what is no regular file.
int tryReplaceRegularFile(const std::string &path, std::string_view text, const Replacement &how);

/// Writes a text to where a path that the user named leads, its links followed. A regular file is replaced as
/// a whole; into a device, a FIFO (whose reader is waited for) and an open file, such as /dev/stdout, the
/// text is written. None when it is done, else why not.
std::optional<std::string> writeNamedFile(const std::string &path, std::string_view text);

/// Why nothing can be written there, as far as that shows without writing or waiting; else none.
std::optional<std::string> obstacleToWriting(const std::string &path);

} // namespace kelmoth
