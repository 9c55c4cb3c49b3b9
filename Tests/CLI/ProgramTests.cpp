// The built program, as a shell runs it, on simulated mice in real time.

#include "Platform/FileDescriptor.h"
#include "Tests/CLI/Shell.h"

#include <gmock/gmock.h>

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace kelmoth {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Matcher;
using testing::Not;
using testing::StartsWith;

TEST(ProgramTest, ReturnsAnExitStatus)
{
    const auto hasColour = HasSubstr("\x1b[");
    const auto hasSwatch = HasSubstr("\x1b[48;2;0;255;0m");
    const struct {
        const char *line;
        int status;
        Matcher<std::string> output = IsEmpty();
        Matcher<std::string> error = IsEmpty();
    } rows[]{
        {"kelmothctl --version", 0, HasSubstr("kelmothctl 0.")},
        {"kelmothctl", 2, IsEmpty(), HasSubstr("kelmothctl --help")},
        {"kelmothctl list --simulate basilisk-v4", 2, IsEmpty(), HasSubstr("\"basilisk-v4\"")},
        {"$1 list --verbose", 0, HasSubstr("2.4 GHz receiver  78 %     yes"),
         HasSubstr("connected: Razer Basilisk V3 X HyperSpeed (PID: 0x00B9)\n")},
        {"kelmothctl --simulate unknown list", 0, IsEmpty(), HasSubstr("no supported mouse")},
        {"kelmothctl --simulate unknown read", 3, IsEmpty(), HasSubstr("no supported mouse")},
        {"SSH_TTY=/dev/pts/1 XDG_SEAT=seat7 $1 doctor", 0,
         AllOf(HasSubstr("  seat          seat7\n  remote        yes\n"), HasSubstr("simulated"))},
        {"script -qec \"$1 reset\" /dev/null <<<n", 1, HasSubstr("X HyperSpeed? [y/N] kelmothctl: nothing")},
        {"script -qec \"$1 reset\" /dev/null <<<y", 0, HasSubstr("[y/N] active stage: 1 -> 3: done")},
        {"kelmothctl -V", 0, HasSubstr("kelmothctl 0.")},
        {"$1 help set light", 0, AllOf(HasSubstr("--brightness"), HasSubstr("Zones:   scroll-wheel\n"))},
        {"kelmothctl set --help --simulate unknown", 0,
         HasSubstr("Zones:   scroll-wheel, logo, underglow\n")},
        {"cmp <(kelmothctl doctor --udev-rule) \"$2/70-kelmoth.rules\"", 0},
        {"$1 set light logo --json 2>/dev/null", 2, HasSubstr(R"({"schema":1,"error":{"code":"usage",)")},
        {"XDG_CONFIG_HOME=/dev/null $1 set stage 3", 5, HasSubstr("stage is now 3"),
         HasSubstr("it could not be saved: /dev/null/com.kelmoth.app")},
        {"$1 export | XDG_CONFIG_HOME=/dev/null $1 import -", 5, HasSubstr("already"),
         HasSubstr("could not be saved: /dev/null/com.kelmoth.app")},
        {"kelmothctl --help", 0, HasSubstr("5 the mouse took it")},
        // What was on the wire belongs to failures of the mouse alone.
        {"$1 set button left disabled", 2, IsEmpty(),
         "kelmothctl: the left button always stays the left click\n"},
        {"$1 export /nonexistent/file", 1, IsEmpty(), StartsWith("kelmothctl: /nonexistent/file")},
        // Output that is lost is an error; a reader that has seen enough is none, and is noticed at once.
        {"$1 list > /dev/full", 1, IsEmpty(), EndsWith("cannot write the output: No space left on device\n")},
        {"$1 list >&- <&- 2>&-", 1},
        {"set -o pipefail; $1 watch --json | head -n 1", 0,
         R"({"schema":1,"event":"attached","device":{"productID":185,)"
         R"("name":"Razer Basilisk V3 X HyperSpeed","connection":"receiver","transport":"USB",)"
         R"("path":"simulated:0/0"},"battery":null,"configurable":true,"reason":null})"
         "\n"},
        // Colour is for terminals that want it.
        {"NO_COLOR= TERM=xterm script -qec \"$1 read\" /dev/null", 0, AllOf(hasColour, Not(hasSwatch))},
        {"COLORTERM=truecolor TERM=xterm script -qec \"$1 read\" /dev/null", 0, hasSwatch},
        {"NO_COLOR=1 TERM=xterm script -qec \"$1 read\" /dev/null", 0, Not(hasColour)},
        {"TERM=xterm script -qec \"$1 read --json\" /dev/null", 0, Not(hasColour)},
        {"COLORTERM=truecolor TERM=xterm LC_ALL=pl_PL.ISO8859-2 $1 read", 0,
         AllOf(HasSubstr("\n  Battery     78 %\n"), HasSubstr("\n  *  1   400  active\n     2   800\n"),
               HasSubstr("\n  scroll-wheel  Scroll Wheel  static  #00ff00  100 %\n"), Not(hasColour))},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.line);
        const auto result = shell(row.line, {QStringLiteral("kelmothctl --simulate basilisk-v3-x-hyperspeed"),
                                             QStringLiteral(KELMOTH_RESOURCES)});
        EXPECT_EQ(result.status, row.status);
        EXPECT_THAT(result.output, row.output);
        EXPECT_THAT(result.error, row.error);
    }
}

TEST(ProgramTest, ExportsToWhereAPathLeads)
{
    const QStringList mouse{QStringLiteral("kelmothctl --simulate basilisk-v3-x-hyperspeed")};
    const auto record = shell("$1 export", mouse).output;
    EXPECT_THAT(record, HasSubstr("dpiStages"));
    const struct {
        const char *line;
        std::string output;
    } rows[]{
        {"mkfifo p; cat p & $1 export p; wait; test -p p", record},
        {"$1 export >(cat); wait $!", record},
        {"exec 5> f; $1 export /dev/fd/5; cat f", record},
        {"{ echo a; $1 export /dev/stdout; echo z; } > f; cat f", "a\n" + record + "z\n"},
        {"echo old > f; chmod 646 f; ln f old; mkdir d; ln -s ../f d/l; $1 export d/l\n"
         "cat old f; stat -c %a f; readlink d/l; ls",
         "old\n" + record + "646\n../f\nd\nf\nold\n"},
        {"umask 27; ln -s f l; $1 export l; stat -c %a f; cat l", "640\n" + record},
        {"mknod n c 1 3 && $1 export n && test -c n", ""},
        {"mknod n c 1 7 && $1 export n 2>&1 | tail -n 1; test -c n",
         "kelmothctl: n: No space left on device\n"},
        {"mknod n b 137 77 && $1 export n 2>&1 | tail -n 1; test -b n", // of no driver
         "kelmothctl: n: No such device or address\n"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.line);
        if (std::string_view(row.line).starts_with("mknod") && ::geteuid() != 0) {
            GTEST_SKIP() << "device nodes are made by root alone";
        }
        const auto result = shell(std::string("cd \"$(mktemp -d -p \"$HOME\")\"; ") + row.line, mouse);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.output, row.output);
        EXPECT_EQ(result.error, "");
    }
}

/// What the watch writes to, and what its reader holds.
using Ends = std::pair<FileDescriptor, FileDescriptor>;

Ends socketOfThisMachine()
{
    std::array<int, 2> ends{};
    ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data());
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

Ends socketOfTheNetwork()
{
    const FileDescriptor listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    FileDescriptor reader(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ::sockaddr_in address{};
    ::socklen_t size = sizeof address;
    ::listen(listener.get(), 1); // at a port of the kernel's choice
    ::getsockname(listener.get(), reinterpret_cast<::sockaddr *>(&address), &size);
    (void)::connect(reader.get(), reinterpret_cast<::sockaddr *>(&address), size);
    return {FileDescriptor(::accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC)), std::move(reader)};
}

Ends terminal()
{
    FileDescriptor reader(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    ::grantpt(reader.get());
    ::unlockpt(reader.get());
    return {FileDescriptor(::open(::ptsname(reader.get()), O_RDWR | O_NOCTTY | O_CLOEXEC)),
            std::move(reader)};
}

TEST(ProgramTest, AWatchEndsWithItsReader)
{
    for (const auto &connect : {socketOfThisMachine, socketOfTheNetwork, terminal}) {
        auto [output, reader] = connect();
        if (connect == socketOfThisMachine) {
            ::shutdown(reader.get(), SHUT_WR); // it reads on
        }
        QProcess watch;
        watch.setChildProcessModifier([end = output.get()] { ::dup2(end, STDOUT_FILENO); });
        watch.start(program, {QStringLiteral("--simulate"), QStringLiteral("basilisk-v3-x-hyperspeed"),
                              QStringLiteral("watch")});
        ASSERT_TRUE(watch.waitForStarted(waitTimeout));
        output = {};
        std::string lines; // to their end: a network connection with something unread is reset
        for (char next = 0;
             !lines.ends_with(" %\n") && !lines.ends_with(" %\r\n") && ::read(reader.get(), &next, 1) == 1;) {
            lines += next;
        }
        EXPECT_THAT(lines, HasSubstr("battery"));
        reader = {};
        EXPECT_TRUE(watch.waitForFinished(waitTimeout));
        EXPECT_EQ(watch.exitCode(), 0);
    }
}

TEST(ProgramTest, TheManualKnowsEveryWordAndItsExamplesRun)
{
    // The options, the models to simulate, the commands, the settings and their words; the products of the
    // rule.
    const auto result = shell(R"sh(
manual=$(sed 's/\\-/-/g' "$1/kelmothctl.1")
helps=$(kelmothctl --help; for verb in get set reset doctor; do kelmothctl help $verb; done
    for verb in dpi stage light button; do kelmothctl help set $verb; done)
words=$(grep -oE -e '--[a-z-]+|^  [a-z][a-z0-9-]+' <<<"$helps" | grep -v kelmothctl | sort -u)
words+=" $(sed -nE 's/^(Zones|Effects|Buttons|Actions): +//p' <<<"$helps" | tr -d , | sed -E 's/:[A-Z0-9.]+//g')"
for word in $words; do
    grep -qE -e "(^|[ (])(${word/#--/-})([ ,:)]|$)" <<<"$manual" || echo "not in the manual: $word"
    ((++count))
done
((count >= 70)) || echo "only $count words"
for product in $(kelmothctl complete --product ''); do
    (($(grep -ciE "[:|\"]${product#0x}[.|\"]" "$1/70-kelmoth.rules") == 2)) || echo "not in the rule: $product"
done
cd "$(mktemp -d)"
export XDG_CONFIG_HOME=$PWD
sudo() { cat; }
command -v jq >/dev/null || jq() { cat; }
kelmothctl() { command kelmothctl --simulate basilisk-v3,basilisk-v3-pro-wired "$@"; }
while IFS= read -r line; do
    eval "${line/--simulate basilisk-v3-pro-wired /}" >/dev/null </dev/null 2>error || { echo "fails: $line"; cat error; }
    ((++examples))
done < <(sed -nE '/^\.Sh EXAMPLES/,/^\.Sh SEE/s/^\.Dl //p' <<<"$manual")
((examples >= 12)))sh",
                              {QStringLiteral(KELMOTH_RESOURCES)});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output + result.error, "");
}

} // namespace
} // namespace kelmoth
