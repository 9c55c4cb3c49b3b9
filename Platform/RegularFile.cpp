#include "Platform/RegularFile.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <sys/stat.h>
#include <system_error>

namespace kelmoth {

namespace {

namespace fs = std::filesystem;

using FileStatus = struct stat;

constexpr mode_t permissions = 07777;

std::string textOf(int error)
{
    return std::generic_category().message(error);
}

/// Names what is at a path instead of a regular file.
std::string kindOf(mode_t mode)
{
    switch (mode & S_IFMT) {
    case S_IFDIR:
        return "Is a directory";
    case S_IFLNK:
        return "Is a symbolic link";
    case S_IFIFO:
        return "Is a FIFO";
    case S_IFSOCK:
        return "Is a socket";
    default:
        return "Is a device";
    }
}

std::string directoryOf(const std::string &path)
{
    const auto directory = fs::path(path).parent_path();
    return directory.empty() ? "." : directory.string();
}

/// A temporary file beside the one that it will replace. Removed unless it has replaced it.
class Successor {
public:
    ~Successor()
    {
        if (!m_path.empty()) {
            ::unlink(m_path.c_str());
        }
    }

    /// 0, or errno, like the functions below.
    int make(const std::string &directory, mode_t mode)
    {
        std::random_device random;
        while (true) {
            const auto path = directory + "/.com.kelmoth." + std::to_string(random());
            const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
            if (descriptor >= 0) {
                m_path = path;
                m_file = FileDescriptor(descriptor);
                return 0;
            }
            if (errno != EEXIST) {
                return errno;
            }
        }
    }

    /// Sets the mode if the umask has changed it.
    int become(mode_t mode, const FileStatus *before)
    {
        FileStatus now{};
        if (::fstat(m_file.get(), &now) != 0) {
            return errno;
        }
        const bool isForeign =
            before != nullptr && (now.st_uid != before->st_uid || now.st_gid != before->st_gid);
        if (isForeign && ::fchown(m_file.get(), before->st_uid, before->st_gid) != 0 && errno != EPERM) {
            return errno;
        }
        return (now.st_mode & permissions) == mode || ::fchmod(m_file.get(), mode) == 0 ? 0 : errno;
    }

    int write(std::string_view text, bool waitsForDisk) const
    {
        const int error = writeAll(m_file.get(), text);
        return error == 0 && waitsForDisk && ::fsync(m_file.get()) != 0 && errno != EINVAL ? errno : error;
    }

    int takePlaceOf(const std::string &path)
    {
        if (::rename(m_path.c_str(), path.c_str()) != 0) {
            return errno;
        }
        m_path.clear();
        return 0;
    }

private:
    std::string m_path;
    FileDescriptor m_file;
};

/// The target of a path.
struct Destination {
    std::string path;    ///< links resolved
    mode_t mode = 0;     ///< 0: does not exist
    int descriptor = -1; ///< of a file that this process has open

    bool isReplaced() const { return descriptor < 0 && (mode == 0 || S_ISREG(mode)); }
};

/// The descriptor of a link in /proc/self/fd. Opening its path would start a file at its beginning, and fail
/// for a socket.
std::optional<int> openDescriptor(const fs::path &link)
{
    std::error_code failure;
    const auto directory = fs::canonical(link.parent_path(), failure);
    if (failure || directory != fs::canonical("/proc/self/fd", failure)) {
        return std::nullopt;
    }
    const auto name = link.filename().string();
    int descriptor = -1;
    std::from_chars(name.data(), name.data() + name.size(), descriptor);
    return descriptor;
}

/// None when nothing can be written, with the reason in `obstacle`.
std::optional<Destination> destinationOf(std::string path, std::string *obstacle)
{
    constexpr int mostLinks = 40; // the kernel's limit
    FileStatus info{};
    for (int links = 0; links <= mostLinks; ++links) {
        if (::lstat(path.c_str(), &info) != 0) {
            if (errno == ENOENT) {
                return Destination{.path = path};
            }
            *obstacle = textOf(errno);
            return std::nullopt;
        }
        if (S_ISDIR(info.st_mode) || S_ISSOCK(info.st_mode)) {
            *obstacle = kindOf(info.st_mode);
            return std::nullopt;
        }
        if (!S_ISLNK(info.st_mode)) {
            return Destination{.path = path, .mode = info.st_mode};
        }
        if (const auto descriptor = openDescriptor(path)) {
            return Destination{.path = path, .descriptor = *descriptor};
        }
        std::error_code failure;
        path = fs::path(directoryOf(path)) / fs::read_symlink(path, failure);
    }
    *obstacle = textOf(ELOOP);
    return std::nullopt;
}

bool isWritable(const std::string &path, int access)
{
    return ::faccessat(AT_FDCWD, path.c_str(), access, AT_EACCESS) == 0;
}

} // namespace

FileDescriptor openRegularFile(const std::string &path, int flags, FileRules rules, std::string *obstacle)
{
    std::string ignored;
    auto &why = obstacle ? *obstacle : ignored;
    FileStatus info{};
    // Opening a device can already have effects.
    const int looked = rules.followsLink ? ::stat(path.c_str(), &info) : ::lstat(path.c_str(), &info);
    if (looked == 0 && !S_ISREG(info.st_mode)) {
        why = kindOf(info.st_mode);
        return {};
    }
    flags |= O_NONBLOCK | O_NOCTTY | O_CLOEXEC | (rules.followsLink ? 0 : O_NOFOLLOW);
    FileDescriptor file(::open(path.c_str(), flags, S_IRUSR | S_IWUSR));
    if (!file || ::fstat(file.get(), &info) != 0) {
        why = textOf(errno);
        return {};
    }
    if (!S_ISREG(info.st_mode)) {
        why = kindOf(info.st_mode);
        return {};
    }
    if (rules.isOwn && info.st_uid != ::geteuid()) {
        why = "Belongs to another user";
        return {};
    }
    return file;
}

std::optional<std::string> readRegularFile(const std::string &path, std::size_t largest, FileRules rules,
                                           std::string *obstacle)
{
    FileStatus info{};
    if (::lstat(path.c_str(), &info) != 0 && errno == ENOENT) {
        return "";
    }
    const auto file = openRegularFile(path, O_RDONLY, rules, obstacle);
    std::string text;
    std::array<char, 16'384> part{};
    while (file && text.size() <= largest) {
        const auto count = ::read(file.get(), part.data(), part.size());
        if (count == 0) {
            return text;
        }
        if (count > 0) {
            text.append(part.data(), static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            break;
        }
    }
    if (file && obstacle) {
        *obstacle =
            text.size() > largest ? "Is larger than " + std::to_string(largest) + " bytes" : textOf(errno);
    }
    return std::nullopt;
}

std::optional<std::string> replaceRegularFile(const std::string &path, std::string_view text,
                                              const Replacement &how)
{
    FileStatus before{};
    if (::lstat(path.c_str(), &before) == 0 && !S_ISREG(before.st_mode)) {
        return kindOf(before.st_mode);
    }
    const int error = tryReplaceRegularFile(path, text, how);
    return error == 0 ? std::nullopt : std::optional(textOf(error));
}

int tryReplaceRegularFile(const std::string &path, std::string_view text, const Replacement &how)
{
    FileStatus before{};
    const bool isThere = ::lstat(path.c_str(), &before) == 0;
    if (!isThere && errno != ENOENT) {
        return errno;
    }
    if (isThere && !S_ISREG(before.st_mode)) {
        return S_ISDIR(before.st_mode) ? EISDIR : EEXIST;
    }
    const auto mode = how.mode || !isThere ? how.mode : before.st_mode & permissions;
    Successor file;
    int error = file.make(directoryOf(path), mode.value_or(0666));
    if (error == 0 && mode) {
        error = file.become(*mode, isThere ? &before : nullptr);
    }
    if (error == 0) {
        error = file.write(text, how.waitsForDisk);
    }
    return error == 0 ? file.takePlaceOf(path) : error;
}

std::optional<std::string> writeNamedFile(const std::string &path, std::string_view text)
{
    std::string obstacle;
    const auto to = destinationOf(path, &obstacle);
    if (!to) {
        return obstacle;
    }
    if (to->isReplaced()) {
        return replaceRegularFile(to->path, text);
    }
    const FileDescriptor file(to->descriptor >= 0
                                  ? ::fcntl(to->descriptor, F_DUPFD_CLOEXEC, 0)
                                  : ::open(to->path.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC));
    const int error = file ? writeAll(file.get(), text) : errno;
    return error == 0 ? std::nullopt : std::optional(textOf(error));
}

std::optional<std::string> obstacleToWriting(const std::string &path)
{
    std::string obstacle;
    const auto to = destinationOf(path, &obstacle);
    if (!to) {
        return obstacle;
    }
    const bool isWellPlaced = !to->isReplaced() || isWritable(directoryOf(to->path), W_OK | X_OK);
    const bool isMissing = to->mode == 0; // or it is an open file
    return isWellPlaced && (isMissing || isWritable(to->path, W_OK)) ? std::nullopt
                                                                     : std::optional(textOf(errno));
}

} // namespace kelmoth
