#include "Platform/Linux/Confinement.h"

#include "Platform/FileDescriptor.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <system_error>

namespace kelmoth {

namespace {

// Constants that are missing from the oldest supported kernel headers.
constexpr std::uint64_t accessTruncate = 1ULL << 14;
constexpr std::uint64_t accessIoctl = 1ULL << 15;
constexpr std::uint64_t accessBindTCP = 1ULL << 0;
constexpr std::uint64_t accessConnectTCP = 1ULL << 1;
constexpr std::uint64_t scopeAbstractSockets = 1ULL << 0;
constexpr std::uint64_t scopeSignals = 1ULL << 1;

/// landlock_ruleset_attr, with the members that came with versions 4 and 6.
struct RulesetAttributes {
    std::uint64_t files;
    std::uint64_t network;
    std::uint64_t scopes;
};

constexpr std::uint64_t reading = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t readingAndWriting =
    reading | LANDLOCK_ACCESS_FS_WRITE_FILE | accessTruncate | accessIoctl;
constexpr std::uint64_t owning =
    readingAndWriting | LANDLOCK_ACCESS_FS_REMOVE_DIR | LANDLOCK_ACCESS_FS_REMOVE_FILE |
    LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_SOCK |
    LANDLOCK_ACCESS_FS_MAKE_FIFO | LANDLOCK_ACCESS_FS_MAKE_SYM | LANDLOCK_ACCESS_FS_REFER;
constexpr std::uint64_t everything =
    owning | LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_MAKE_CHAR | LANDLOCK_ACCESS_FS_MAKE_BLOCK;

/// The accesses that an ABI version handles.
std::uint64_t knownTo(int version, std::uint64_t accesses)
{
    if (version < 2) {
        accesses &= ~static_cast<std::uint64_t>(LANDLOCK_ACCESS_FS_REFER);
    }
    if (version < 3) {
        accesses &= ~accessTruncate;
    }
    return version < 5 ? accesses & ~accessIoctl : accesses;
}

/// The rule set for an ABI version: it rejects access kinds that it does not know.
std::size_t sizeKnownTo(int version)
{
    if (version >= 6) {
        return sizeof(RulesetAttributes);
    }
    return version >= 4 ? offsetof(RulesetAttributes, scopes) : offsetof(RulesetAttributes, network);
}

/// False with errno set.
bool allow(int ruleset, const std::string &path, std::uint64_t accesses)
{
    const FileDescriptor place(::open(path.c_str(), O_PATH | O_CLOEXEC));
    struct stat info{};
    if (!place || ::fstat(place.get(), &info) != 0) {
        return errno == ENOENT || errno == EACCES || errno == ENOTDIR || errno == ELOOP;
    }
    if (!S_ISDIR(info.st_mode)) {
        accesses &=
            LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_WRITE_FILE | accessTruncate | accessIoctl;
    }
    const ::landlock_path_beneath_attr rule{.allowed_access = accesses, .parent_fd = place.get()};
    return ::syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &rule, 0U) == 0;
}

} // namespace

int landlockVersion()
{
    const auto version =
        ::syscall(SYS_landlock_create_ruleset, nullptr, std::size_t{0}, LANDLOCK_CREATE_RULESET_VERSION);
    return version > 0 ? static_cast<int>(version) : 0;
}

std::optional<std::string> confine(const FileRights &rights, const Contacts &contacts)
{
    const int version = landlockVersion();
    if (version == 0) {
        return "the kernel has no Landlock";
    }
    const RulesetAttributes attributes{
        .files = knownTo(version, everything),
        .network = contacts.byNetwork ? 0 : accessBindTCP | accessConnectTCP,
        .scopes = contacts.byAbstractSocket ? scopeSignals : scopeSignals | scopeAbstractSockets};
    const FileDescriptor ruleset(
        static_cast<int>(::syscall(SYS_landlock_create_ruleset, &attributes, sizeKnownTo(version), 0U)));
    bool isDone = static_cast<bool>(ruleset);
    const auto allowAll = [&](const std::vector<std::string> &paths, std::uint64_t accesses) {
        for (const auto &path : paths) {
            isDone = isDone && allow(ruleset.get(), path, knownTo(version, accesses));
        }
    };
    allowAll(rights.readable, reading);
    allowAll(rights.usable, readingAndWriting);
    allowAll(rights.own, owning);
    isDone = isDone && ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
             ::syscall(SYS_landlock_restrict_self, ruleset.get(), 0U) == 0;
    return isDone ? std::nullopt : std::optional(std::generic_category().message(errno));
}

} // namespace kelmoth
