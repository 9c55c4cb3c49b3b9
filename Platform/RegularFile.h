#pragma once

#include "Platform/FileDescriptor.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kelmoth {

// Functions to read and replace files safely. A path may lead to anything: a device, a FIFO without a peer, a
// planted link. Any thread.

/// Which files may be opened.
struct FileRules {
    bool followsLink = false; ///< follow a symbolic link at the end of the path
    bool isOwn = false;       ///< only files that belong to this process's user
};

/// Opens a regular file without blocking, with the flags of open(); O_CREAT creates one that only its owner
/// can read. None for anything else at the path, with the reason in `obstacle`.
FileDescriptor openRegularFile(const std::string &path, int flags, FileRules rules = {},
                               std::string *obstacle = nullptr);

/// The content of a regular file; "" when it does not exist. None when it has more than `largest` bytes or
/// cannot be read, with the reason in `obstacle`.
std::optional<std::string> readRegularFile(const std::string &path, std::size_t largest, FileRules rules = {},
                                           std::string *obstacle = nullptr);

/// Options for writing a file.
struct Replacement {
    /// None: the mode of the replaced file; for a new one 0666 without the umask.
    std::optional<mode_t> mode = std::nullopt;
    bool waitsForDisk = true; ///< a power failure leaves the old or the new file
};

/// Creates or atomically replaces a regular file: readers get the old or the new content. Follows no link.
/// None on success, else the reason; the old file is then unchanged.
std::optional<std::string> replaceRegularFile(const std::string &path, std::string_view text,
                                              const Replacement &how = {});

/// The same, returning 0 or errno: EISDIR or EEXIST for anything but a regular file.
int tryReplaceRegularFile(const std::string &path, std::string_view text, const Replacement &how);

/// Writes a text to a path given by the user; follows links. Replaces a regular file atomically; writes into
/// a device, a FIFO (waits for its reader) or an open file such as /dev/stdout. None on success, else the
/// reason.
std::optional<std::string> writeNamedFile(const std::string &path, std::string_view text);

/// Why `writeToPath` would fail, as far as is known without writing or blocking; else none.
std::optional<std::string> obstacleToWriting(const std::string &path);

} // namespace kelmoth
