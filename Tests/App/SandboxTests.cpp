#include "App/Sandbox.h"
#include "Platform/Linux/Confinement.h"
#include "Platform/Linux/SystemCallFilter.h"

#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <linux/fs.h>
#include <linux/netlink.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace kelmoth {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

// What is tried goes on in a process of its own, which ends with all that it has opened.

/// 0, or the errno of a call that failed.
int outcome(long result)
{
    return result < 0 ? errno : 0;
}

int opening(const std::string &path, int flags)
{
    return outcome(::open(path.c_str(), flags | O_CLOEXEC, 0600));
}

int connectingTo(const void *address, ::socklen_t size)
{
    const auto *const name = static_cast<const ::sockaddr *>(address);
    return outcome(::connect(::socket(name->sa_family, SOCK_STREAM | SOCK_CLOEXEC, 0), name, size));
}

/// A socket of a name that is no file's, the one at which the X server of that number listens.
class AbstractSocket {
public:
    explicit AbstractSocket(int number) : m_listener(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        m_address.sun_family = AF_UNIX;
        m_size = static_cast<::socklen_t>(
            offsetof(::sockaddr_un, sun_path) + 1 +
            ("/tmp/.X11-unix/X" + std::to_string(number)).copy(&m_address.sun_path[1], 90));
        (void)::bind(m_listener.get(), reinterpret_cast<const ::sockaddr *>(&m_address), m_size);
        ::listen(m_listener.get(), 9);
    }
    int connecting() const { return connectingTo(&m_address, m_size); }

private:
    FileDescriptor m_listener;
    ::sockaddr_un m_address{};
    ::socklen_t m_size = 0;
};

/// What a process of its own, confined to its end, makes of something.
int alone(const std::function<int()> &something)
{
    const auto process = ::fork();
    if (process == 0) {
        std::_Exit(something());
    }
    int status = -1;
    ::waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void moveTo(const std::string &home)
{
    for (const auto &[name, value] : {std::pair{"HOME", ""},
                                      {"XDG_CONFIG_HOME", "/.config"},
                                      {"XDG_DATA_HOME", "/.local/share"},
                                      {"XDG_CACHE_HOME", "/.cache"},
                                      {"XDG_RUNTIME_DIR", ""},
                                      {"XCURSOR_PATH", "/document/icons"}, // the document is a file
                                      {"PATH", "/tools"}}) {
        ::setenv(name, (home + value).c_str(), 1);
    }
    for (const auto *name : {"XDG_CURRENT_DESKTOP", "DBUS_SESSION_BUS_ADDRESS", "DISPLAY", "QT_IM_MODULE"}) {
        ::unsetenv(name);
    }
}

Sandbox programSandbox()
{
    return {"com.kelmoth.app", "com.kelmoth.app.lock", QStringLiteral("/bin/true")};
}

/// How many attempts ended otherwise than they should.
int attemptsThatFail(const std::string &home)
{
    auto sandbox = programSandbox();
    int failures = sandbox.failure() ? 1 : 0;
    const auto expect = [&](const char *what, int result, int wanted) {
        if (result != wanted) {
            std::cerr << what << ": " << std::strerror(result) << '\n';
            ++failures;
        }
    };
    constexpr int make = O_RDWR | O_CREAT;
    const auto settings = home + "/.config/com.kelmoth.app";
    const auto written = settings + "/defaults.ini.new";
    expect("settings", opening(written, make), 0);
    expect("settings by rename", ::rename(written.c_str(), (settings + "/defaults.ini").c_str()), 0);
    expect("lock", opening(home + "/.local/share/com.kelmoth.app.lock", make), 0);
    expect("temporary file", opening(std::string(std::getenv("TMPDIR")) + "/x", make), 0);
    expect("the cache of fonts", opening(home + "/.cache/fontconfig/x", make), 0);
    expect("device", opening("/dev/null", O_RDWR), 0);
    expect("the toolkit's settings", opening(home + "/.config/kdeglobals", O_RDONLY), 0);
    expect("the system", opening("/etc/passwd", O_RDONLY), 0);
    expect("the program", opening("/proc/self/exe", O_RDONLY), 0);

    const auto document = home + "/document";
    expect("beside the program", opening(home + "/bin/beside", O_RDONLY), EACCES);
    expect("another's settings", opening(home + "/.config/kdeglobals", O_WRONLY), EACCES);
    expect("new settings", opening(home + "/.config/new", make), EACCES);
    expect("an entry of what starts at login", opening(home + "/.config/autostart/new", make), EACCES);
    expect("another such entry", opening(home + "/.config/autostart/other", O_WRONLY), EACCES);
    expect("new data", opening(home + "/.local/share/new", make), EACCES);
    expect("another's data", opening(home + "/.local/share/old", O_WRONLY), EACCES);
    expect("document", opening(document, O_WRONLY), EACCES);
    expect("reading a document", opening(document, O_RDONLY), EACCES);
    expect("truncating a document", outcome(::truncate(document.c_str(), 0)), EPERM);
    expect("removing a document", outcome(::unlink(document.c_str())), EACCES);
    expect("everybody's temporary files", opening(home + "/../new", make), EACCES);
    expect("running a program", outcome(::execl("/bin/true", "true", nullptr)), EACCES);
    expect("gaining privileges", ::prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0), 1);
    // What it may not do itself is done outside, in this order.
    std::vector<int> answers;
    using enum AutostartRequest;
    for (const auto request : {registerEntry, AutostartRequest{'x'}, openSettings}) {
        sandbox.askForAutostart(request, [&](int failure) { answers.push_back(failure); });
    }
    (void)QTest::qWaitFor([&] { return answers.size() == 3; });
    expect("three answers", answers == std::vector{0, EINVAL, 0} ? 0 : EPROTO, 0);
    const auto entry = home + "/.config/autostart/com.kelmoth.app.desktop";
    expect("the entry", opening(entry, O_RDONLY), 0);
    expect("writing the entry", opening(entry, O_WRONLY), EACCES);
    return failures;
}

class SandboxTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (landlockVersion() == 0) {
            GTEST_SKIP() << "this kernel has no Landlock";
        }
    }

    const QTemporaryDir directory;
    const std::string home = directory.path().toStdString();
};

TEST_F(SandboxTest, AllowsWhatTheProgramNeedsAndRefusesTheRest)
{
    if (const char *other = std::getenv("KELMOTH_CONFINED")) {
        moveTo(other);
        std::_Exit(attemptsThatFail(other));
    }
    for (const auto *name : {"document", ".config/kdeglobals", ".local/share/old", "tools/xdg-open",
                             "bin/beside", ".config/autostart/other"}) {
        const fs::path path(home + '/' + name);
        fs::create_directories(path.parent_path());
        std::ofstream(path) << "#!/bin/sh\necho \"$1\" > $HOME/new\n/bin/mv $HOME/new $HOME/opened\n";
    }
    fs::permissions(home + "/tools/xdg-open", fs::perms::owner_all);
    const auto program = home + "/bin/program"; // a program in the user's home
    fs::copy_file("/proc/self/exe", program);
    EXPECT_EQ(alone([&] {
                  ::setenv("KELMOTH_CONFINED", home.c_str(), 1);
                  ::execl(program.c_str(), program.c_str(), "--gtest_filter=SandboxTest.Allows*", nullptr);
                  return 99;
              }),
              0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return fs::exists(home + "/opened"); }));
}

TEST_F(SandboxTest, ConnectsOnlyAsTheDesktopNeeds)
{
    const AbstractSocket stranger(::getpid());
    const auto display = ':' + std::to_string(::getpid()) + ".0";
    const int abstract = landlockVersion() >= 6 ? EPERM : 0;
    const struct {
        const char *variable;
        std::string value;
        int connecting, network;
    } rows[]{
        {"DISPLAY", "", abstract, EPERM},
        {"DISPLAY", display, 0, EPERM},
        {"DISPLAY", "host:4194305", abstract, 0},
        {"DBUS_SESSION_BUS_ADDRESS", "unix:abstract=/x", 0, EPERM},
        {"DBUS_SESSION_BUS_ADDRESS", "tcp:host=x", abstract, 0},
        {"QT_IM_MODULE", "ibus", 0, EPERM},
    };
    for (const auto &row : rows) {
        const auto confined = [&](const std::function<int()> &attempt) {
            return alone([&] {
                moveTo(home);
                ::setenv(row.variable, row.value.c_str(), 1);
                const auto sandbox = programSandbox();
                return sandbox.failure() ? 99 : attempt();
            });
        };
        EXPECT_EQ(confined([&] { return stranger.connecting(); }), row.connecting) << row.value;
        EXPECT_EQ(confined([] { return outcome(::socket(AF_INET, SOCK_DGRAM, 0)); }), row.network)
            << row.value;
    }
}

/// Where one of the two is missing the other still holds.
TEST_F(SandboxTest, EachMechanismHoldsAlone)
{
    const auto landlocked = [](const std::function<int()> &attempt) {
        return alone([&] { return confine({{"/"}, {}, {}}, {}) ? 99 : attempt(); });
    };
    if (landlockVersion() >= 6) {
        EXPECT_EQ(landlocked([] { return outcome(::kill(::getppid(), 0)); }), EPERM);
    }
    if (landlockVersion() >= 4) {
        ::sockaddr_in port{.sin_family = AF_INET, .sin_port = htons(9), .sin_addr = {}, .sin_zero = {}};
        port.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(landlocked([&] { return connectingTo(&port, sizeof port); }), EACCES);
    }
    const auto path = home + "/file";
    const auto *const name = path.c_str();
    const FileDescriptor file(::open(name, O_RDONLY | O_CREAT | O_CLOEXEC, 0600));
    const int fd = file.get();
    const int flags = 0;
    const ::rlimit limit{0, 0};
    const auto self = ::getpid();
    const FileDescriptor handle(static_cast<int>(::syscall(SYS_pidfd_open, self, 0U)));
    const struct {
        const char *name;
        int wanted;
        std::function<long()> attempt;
    } rows[]{
        {"fchmod 0600", 0, [&] { return ::fchmod(fd, 0600); }},
        {"fchmod 0644", EPERM, [&] { return ::fchmod(fd, 0644); }},
        {"truncate", EPERM, [&] { return ::truncate(name, 0); }},
        {"chmod", EPERM, [&] { return ::chmod(name, 0600); }},
        {"fchmodat", EPERM, [&] { return ::fchmodat(AT_FDCWD, name, 0600, 0); }},
        {"fchmodat2", EPERM, [&] { return ::syscall(452, AT_FDCWD, name, 0600, 0); }},
        {"chown", EPERM, [&] { return ::chown(name, 0, 0); }},
        {"lchown", EPERM, [&] { return ::lchown(name, 0, 0); }},
        {"fchown", EPERM, [&] { return ::fchown(fd, 0, 0); }},
        {"fchownat", EPERM, [&] { return ::fchownat(AT_FDCWD, name, 0, 0, 0); }},
        {"utimensat", EPERM, [&] { return ::utimensat(AT_FDCWD, name, nullptr, 0); }},
        {"setxattr", EPERM, [&] { return ::setxattr(name, "user.a", "", 0, 0); }},
        {"lsetxattr", EPERM, [&] { return ::lsetxattr(name, "user.a", "", 0, 0); }},
        {"fsetxattr", EPERM, [&] { return ::fsetxattr(fd, "user.a", "", 0, 0); }},
        {"setxattrat", EPERM, [&] { return ::syscall(463, AT_FDCWD, name, 0, "user.a", nullptr, 0); }},
        {"removexattr", EPERM, [&] { return ::removexattr(name, "user.a"); }},
        {"lremovexattr", EPERM, [&] { return ::lremovexattr(name, "user.a"); }},
        {"fremovexattr", EPERM, [&] { return ::fremovexattr(fd, "user.a"); }},
        {"removexattrat", EPERM, [&] { return ::syscall(466, AT_FDCWD, name, 0, "user.a"); }},
        {"file_setattr", EPERM, [&] { return ::syscall(469, AT_FDCWD, name, nullptr, 0, 0); }},
        {"flags", EPERM, [&] { return ::ioctl(fd, FS_IOC_SETFLAGS, &flags); }},
        {"a terminal", EPERM, [&] { return ::ioctl(fd, TIOCSTI, "x"); }},
        {"a terminal, by half", EPERM, [&] { return ::syscall(SYS_ioctl, fd, TIOCSTI | 1UL << 32, "x"); }},
        {"kill", EPERM, [&] { return ::kill(self, 0); }},
        {"kill all", EPERM, [] { return ::kill(-1, 0); }},
        {"kill itself", 0, [] { return ::kill(::getpid(), 0); }},
        {"tkill", EPERM, [&] { return ::syscall(SYS_tkill, self, 0); }},
        {"tgkill", EPERM, [&] { return ::syscall(SYS_tgkill, self, self, 0); }},
        {"tgkill itself", 0, [] { return ::syscall(SYS_tgkill, ::getpid(), ::gettid(), 0); }},
        {"sigqueue", EPERM, [&] { return ::sigqueue(self, 0, {}); }},
        {"pidfd", EPERM, [&] { return ::syscall(SYS_pidfd_send_signal, handle.get(), 0, nullptr, 0U); }},
        {"owner", EPERM, [&] { return ::fcntl(fd, F_SETOWN, self); }},
        {"limit", EPERM, [&] { return ::prlimit(self, RLIMIT_CORE, &limit, nullptr); }},
        {"own limit", 0, [&] { return ::prlimit(0, RLIMIT_CORE, &limit, nullptr); }},
        {"io_uring", EPERM, [] { return ::syscall(SYS_io_uring_setup, 1, nullptr); }},
        {"UDP", EPERM, [] { return ::socket(AF_INET, SOCK_DGRAM, 0); }},
        {"IPv6", EPERM, [] { return ::socket(AF_INET6, SOCK_STREAM, 0); }},
        {"packets", EPERM, [] { return ::socket(AF_PACKET, SOCK_RAW, 0); }},
        {"another family", EPERM, [] { return ::socket(AF_MAX, SOCK_RAW, 0); }},
        {"no family", EPERM, [] { return ::socket(AF_UNSPEC, SOCK_RAW, 0); }},
        {"routes", EPERM, [] { return ::socket(AF_NETLINK, SOCK_RAW, NETLINK_ROUTE); }},
        {"device events", 0, [] { return ::socket(AF_NETLINK, SOCK_RAW, NETLINK_KOBJECT_UEVENT); }},
        {"this machine", 0, [] { return ::socket(AF_UNIX, SOCK_STREAM, 0); }},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(alone([&] { return filterSystemCalls(false) ? 99 : outcome(row.attempt()); }), row.wanted)
            << row.name;
    }
}

TEST(OutsideHelperTest, TellsOfItsEnd)
{
    std::vector<int> answers;
    const auto ask = [&](OutsideHelper &helper, char request) {
        helper.ask(request, [&](int failure) { answers.push_back(failure); });
    };
    OutsideHelper ending([](char request) -> int { return request == 'e' ? ::_exit(0), 0 : request; });
    for (const char request : {'\1', 'e', '\2'}) {
        ask(ending, request);
    }
    ASSERT_TRUE(QTest::qWaitFor([&] { return answers.size() == 3; }));
    ask(ending, 3);
    ASSERT_TRUE(QTest::qWaitFor([&] { return answers.size() == 4; }));
    EXPECT_EQ(answers, (std::vector<int>{1, EPIPE, EPIPE, EPIPE}));

    answers.clear();
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const FileDescriptor reader(ends[0]), writer(ends[1]); // held until the test ends, and so is the helper
    OutsideHelper stuck(
        [&](char request) {
            ::close(writer.get());
            return static_cast<int>(::read(reader.get(), &request, 1));
        },
        50ms);
    ask(stuck, 1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !answers.empty(); }));
    EXPECT_EQ(answers, std::vector{ETIMEDOUT});
}

} // namespace
} // namespace kelmoth
