#include "App/Sandbox.h"
#include "Platform/Linux/Confinement.h"

#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kelmoth {
namespace {

namespace fs = std::filesystem;

/// 0, or the errno with which a file cannot be opened.
int opening(const std::string &path, int flags)
{
    const FileDescriptor file(::open(path.c_str(), flags | O_CLOEXEC, 0600));
    return file ? 0 : errno;
}

int connectingAcrossTheNetwork()
{
    const FileDescriptor end(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ::sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(9);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return ::connect(end.get(), reinterpret_cast<::sockaddr *>(&address), sizeof address) == 0 ? 0 : errno;
}

int running(const char *program)
{
    ::execl(program, program, nullptr);
    return errno;
}

/// In a process of its own, which stays confined to its end. How many of its attempts ended otherwise than
/// they should.
int attemptsThatFail(const std::string &home)
{
    const Sandbox sandbox("com.kelmoth.app", "com.kelmoth.app.lock");
    int failures = sandbox.failure() ? 1 : 0;
    const auto expect = [&](const char *what, int outcome, int wanted) {
        if (outcome != wanted) {
            std::cerr << what << ": " << std::strerror(outcome) << '\n';
            ++failures;
        }
    };
    constexpr int make = O_RDWR | O_CREAT;
    const auto settings = home + "/.config/com.kelmoth.app";
    expect("settings", opening(settings + "/defaults.ini.new", make), 0);
    expect("settings by rename",
           ::rename((settings + "/defaults.ini.new").c_str(), (settings + "/defaults.ini").c_str()), 0);
    expect("autostart", opening(home + "/.config/autostart/com.kelmoth.app.desktop", make), 0);
    expect("lock", opening(home + "/.local/share/com.kelmoth.app.lock", make), 0);
    expect("temporary file", opening(std::string(std::getenv("TMPDIR")) + "/x", make), 0);
    expect("device", opening("/dev/null", O_RDWR), 0);
    expect("the toolkit's settings", opening(home + "/.config/kdeglobals", O_RDONLY), 0);
    expect("the system", opening("/etc/passwd", O_RDONLY), 0);

    expect("another's settings", opening(home + "/.config/kdeglobals", O_WRONLY), EACCES);
    expect("new settings", opening(home + "/.config/new", make), EACCES);
    expect("new data", opening(home + "/.local/share/new", make), EACCES);
    expect("document", opening(home + "/document", O_WRONLY), EACCES);
    expect("reading a document", opening(home + "/document", O_RDONLY), EACCES);
    expect("truncating a document", ::truncate((home + "/document").c_str(), 0) == 0 ? 0 : errno, EACCES);
    expect("removing a document", ::unlink((home + "/document").c_str()) == 0 ? 0 : errno, EACCES);
    expect("everybody's temporary files", opening(home + "/../new", make), EACCES);
    expect("running a program", running("/bin/true"), EACCES);
    expect("gaining privileges", ::prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0), 1);
    if (landlockVersion() >= 4) {
        expect("the network", connectingAcrossTheNetwork(), EACCES);
    }
    // What it may not do itself is done outside.
    sandbox.openLoginItemsSettings();
    return failures;
}

TEST(SandboxTest, AllowsWhatTheProgramNeedsAndRefusesTheRest)
{
    if (landlockVersion() == 0) {
        GTEST_SKIP() << "this kernel has no Landlock";
    }
    const QTemporaryDir directory;
    const auto home = directory.path().toStdString();
    for (const auto *name : {"document", ".config/kdeglobals", ".local/share/old", "tools/xdg-open"}) {
        const fs::path path(home + '/' + name);
        fs::create_directories(path.parent_path());
        std::ofstream(path) << "#!/bin/sh\necho \"$1\" > $HOME/new\n/bin/mv $HOME/new $HOME/opened\n";
    }
    fs::permissions(home + "/tools/xdg-open", fs::perms::owner_all);
    const auto process = ::fork();
    if (process == 0) {
        for (const auto &[name, value] : {std::pair{"HOME", ""},
                                          {"XDG_CONFIG_HOME", "/.config"},
                                          {"XDG_DATA_HOME", "/.local/share"},
                                          {"XDG_RUNTIME_DIR", ""},
                                          {"PATH", "/tools"}}) {
            ::setenv(name, (home + value).c_str(), 1);
        }
        ::unsetenv("XDG_CURRENT_DESKTOP");
        ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
        std::_Exit(attemptsThatFail(home));
    }
    int status = -1;
    ::waitpid(process, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return fs::exists(home + "/opened"); }));
}

} // namespace
} // namespace kelmoth
