#include "Platform/Linux/SystemCallFilter.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <initializer_list>
#include <linux/fs.h>
#include <linux/netlink.h>
#include <memory>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace kelmoth {

namespace {

// System calls newer than the library's tables; the numbers are the same on every architecture.
constexpr int fchmodat2Call = 452;
constexpr int setxattratCall = 463;
constexpr int removexattratCall = 466;
constexpr int fileSetattrCall = 469;

constexpr std::array refusedCalls{
    SCMP_SYS(truncate), // not covered by Landlock before version 3
    SCMP_SYS(truncate64),
    SCMP_SYS(chmod),
    SCMP_SYS(fchmodat),
    fchmodat2Call,
    SCMP_SYS(chown),
    SCMP_SYS(lchown),
    SCMP_SYS(fchown),
    SCMP_SYS(fchownat),
    SCMP_SYS(utime),
    SCMP_SYS(utimes),
    SCMP_SYS(futimesat),
    SCMP_SYS(utimensat),
    SCMP_SYS(setxattr),
    SCMP_SYS(lsetxattr),
    SCMP_SYS(fsetxattr),
    setxattratCall,
    SCMP_SYS(removexattr),
    SCMP_SYS(lremovexattr),
    SCMP_SYS(fremovexattr),
    removexattratCall,
    fileSetattrCall,
    SCMP_SYS(tkill),
    SCMP_SYS(pidfd_send_signal),
    SCMP_SYS(io_uring_setup),
};

/// System calls whose first argument is the target process.
constexpr std::array signalCalls{SCMP_SYS(kill), SCMP_SYS(tgkill), SCMP_SYS(rt_sigqueueinfo),
                                 SCMP_SYS(rt_tgsigqueueinfo)};

/// The second argument of ioctl: flags of files, typing into a terminal, and the receiver of a signal.
constexpr std::array<unsigned long, 6> refusedControls{FS_IOC_SETFLAGS, FS_IOC_FSSETXATTR, TIOCSTI,
                                                       TIOCLINUX,       FIOSETOWN,         SIOCSPGRP};

/// The second argument of fcntl: the receiver of a signal.
constexpr std::array refusedFileControls{F_SETOWN, F_SETOWN_EX};

constexpr std::uint64_t lowHalf = 0xFFFF'FFFF; // the part of an argument that the kernel uses

// Comparison of an argument, 0-based, that denies a call. (The library's macros are C.)

constexpr scmp_arg_cmp is(unsigned argument, std::uint64_t value)
{
    return {argument, SCMP_CMP_MASKED_EQ, lowHalf, value};
}

constexpr scmp_arg_cmp isNot(unsigned argument, std::uint64_t value)
{
    return {argument, SCMP_CMP_NE, value, 0};
}

constexpr scmp_arg_cmp isAtLeast(unsigned argument, std::uint64_t value)
{
    return {argument, SCMP_CMP_GE, value, 0};
}

/// Collects the rules. Keeps the first failure.
class Filter {
public:
    Filter() : m_context(seccomp_init(SCMP_ACT_ALLOW), seccomp_release)
    {
        m_failure = m_context ? 0 : -ENOMEM;
    }

    void refuse(int call, std::initializer_list<scmp_arg_cmp> conditions = {})
    {
        if (m_failure == 0) {
            m_failure = seccomp_rule_add_array(m_context.get(), SCMP_ACT_ERRNO(EPERM), call,
                                               static_cast<unsigned>(conditions.size()), conditions.begin());
        }
    }

    /// 0, or an errno.
    int load()
    {
        if (m_failure == 0) {
            m_failure = seccomp_load(m_context.get());
        }
        return -m_failure;
    }

private:
    std::unique_ptr<void, void (*)(scmp_filter_ctx)> m_context;
    int m_failure = 0;
};

void refuseNetwork(Filter &filter)
{
    for (const int call : {SCMP_SYS(socket), SCMP_SYS(socketpair)}) {
        for (unsigned family = 0; family < AF_MAX; ++family) {
            if (family != AF_UNIX && family != AF_NETLINK) {
                filter.refuse(call, {is(0, family)});
            }
        }
        filter.refuse(call, {isAtLeast(0, AF_MAX)});
    }
    filter.refuse(SCMP_SYS(socket), {is(0, AF_NETLINK), isNot(2, NETLINK_KOBJECT_UEVENT)});
}

} // namespace

std::optional<std::string> filterSystemCalls(bool usesNetwork)
{
    Filter filter;
    for (const int call : refusedCalls) {
        filter.refuse(call);
    }
    filter.refuse(SCMP_SYS(fchmod), {isNot(1, 0600)});
    for (const int call : signalCalls) {
        filter.refuse(call, {isNot(0, static_cast<std::uint64_t>(::getpid()))});
    }
    filter.refuse(SCMP_SYS(prlimit64), {isNot(0, 0)});
    for (const auto control : refusedControls) {
        filter.refuse(SCMP_SYS(ioctl), {is(1, control)});
    }
    for (const auto control : refusedFileControls) {
        filter.refuse(SCMP_SYS(fcntl), {is(1, static_cast<unsigned>(control))});
    }
    if (!usesNetwork) {
        refuseNetwork(filter);
    }
    const int failure = filter.load();
    return failure == 0 ? std::nullopt : std::optional(std::generic_category().message(failure));
}

} // namespace kelmoth
