// The built program, as a shell runs it, on simulated mice in real time.

#include "Tests/CLI/Shell.h"

#include <QFile>
#include <gmock/gmock.h>

#include <csignal>
#include <iterator>
#include <sstream>

namespace kelmoth {
namespace {

using namespace Qt::StringLiterals;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Matcher;
using testing::Not;
using testing::StartsWith;

/// The options that the help names, the models to simulate, and the commands.
std::vector<std::string> wordsOfHelp()
{
    std::istringstream words(
        shell("kelmothctl --help | grep -oE -e '--[a-z]+|^  [a-z][a-z0-9-]+' | grep -v kelmothctl").output);
    std::vector<std::string> list{std::istream_iterator<std::string>(words), {}};
    EXPECT_GE(list.size(), 17);
    return list;
}

TEST(ProgramTest, TellsItsCallerHowItWent)
{
    const struct {
        const char *arguments;
        int status;
        const char *output;
        const char *error;
    } rows[]{
        {"--version", 0, "kelmothctl 0.", ""},
        {"--help", 0, "Commands:", ""},
        {"", 2, "", "kelmothctl --help"},
        {"list --simulate basilisk-v4", 2, "", "\"basilisk-v4\""},
        {"--simulate basilisk-v3-x-hyperspeed list", 0, "2.4 GHz receiver  78 %", ""},
        {"list --simulate basilisk-v3 --verbose", 0, "USB cable",
         "connected: Razer Basilisk V3 (PID: 0x0099)\n"},
        {"--simulate unknown list", 0, "", "no supported mouse"},
        {"--simulate unknown list --json", 0, "[]", ""},
        {"--simulate unknown read", 3, "", "no supported mouse"},
        {"--simulate basilisk-v3:bluetooth read", 3, "", "use the cable or the receiver"},
        {"--simulate basilisk-v3 read --product 0x00aa", 3, "", "0x00AA"},
        {"--simulate basilisk-v3,basilisk-v3-pro read --product 172 --json", 0,
         "{\"device\":{\"productID\":172,", ""},
        {"--simulate basilisk-v3 doctor", 0, "simulated", ""},
        {"--simulate basilisk-v3:bluetooth doctor --json", 3, "\"canConfigure\":false", "Bluetooth"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.arguments);
        const auto result = shell(std::string("kelmothctl ") + row.arguments);
        EXPECT_EQ(result.status, row.status);
        EXPECT_THAT(result.output, *row.output ? Matcher<std::string>(HasSubstr(row.output)) : IsEmpty());
        EXPECT_THAT(result.error, *row.error ? Matcher<std::string>(HasSubstr(row.error)) : IsEmpty());
    }
}

TEST(ProgramTest, ReadIsForPeople)
{
    const auto read = shell("LC_ALL=pl_PL.ISO8859-2 kelmothctl --simulate basilisk-v3 read");
    EXPECT_EQ(read.status, 0);
    EXPECT_THAT(read.error, IsEmpty());
    EXPECT_EQ(read.output, R"(Razer Basilisk V3 (0x0099)
  Connection  USB cable
  Lift-off    Medium

DPI stages
  *  1   400  active
     2   800
     3  1600
     4  3200
     5  6400

Lighting
  Scroll Wheel  static  #00FF00  100 %
  Logo          static  #00FF00  100 %
  Underglow     static  #00FF00  100 %

Buttons
  Left Click         Left Click
  Right Click        Right Click
  Middle Click       Middle Click
  Forward            Forward
  Back               Back
  DPI Button         DPI Cycle
  Wheel Mode Button  Wheel Mode Toggle
  Scroll Up          Scroll Up
  Scroll Down        Scroll Down
  Clutch             Hypershift
  Bottom Button      Profile Switch
)");
}

TEST(ProgramTest, ColourIsForTerminalsThatWantIt)
{
    const auto read = [](const std::string &variables) {
        return shell(variables + " kelmothctl --simulate basilisk-v3 read").output;
    };
    const auto readOnTerminal = [](const std::string &variables, const char *option = "") {
        return shell(variables + " script -qec 'kelmothctl --simulate basilisk-v3 read " + option +
                     "' /dev/null")
            .output;
    };
    const auto hasEscape = HasSubstr("\x1b[");
    EXPECT_THAT(readOnTerminal("TERM=xterm NO_COLOR="), AllOf(hasEscape, Not(HasSubstr("\x1b[48;2"))));
    EXPECT_THAT(readOnTerminal("TERM=xterm COLORTERM=truecolor"), HasSubstr("\x1b[48;2;0;255;0m"));
    for (const auto *variables : {"TERM=xterm NO_COLOR=1", "TERM=dumb", ""}) {
        EXPECT_THAT(readOnTerminal(variables), AllOf(HasSubstr("Lighting"), Not(hasEscape))) << variables;
    }
    EXPECT_THAT(readOnTerminal("TERM=xterm", "--json"), AllOf(StartsWith("{"), Not(hasEscape)));
    EXPECT_THAT(read("TERM=xterm COLORTERM=truecolor"), AllOf(HasSubstr("Lighting"), Not(hasEscape)));
}

TEST(ProgramTest, OutputThatIsLostIsAnError)
{
    const auto full = shell("kelmothctl --simulate basilisk-v3 list > /dev/full");
    EXPECT_EQ(full.status, 1);
    EXPECT_THAT(full.error, EndsWith("kelmothctl: cannot write the output: No space left on device\n"));
    EXPECT_EQ(shell("kelmothctl --help > /dev/full").status, 1);
    EXPECT_EQ(shell("kelmothctl --simulate basilisk-v3 list >&- <&- 2>&-").status, 1);
    // A reader that has seen enough is none.
    const auto pipe = shell("set -o pipefail; kelmothctl --simulate basilisk-v3 read | head -n 1");
    EXPECT_EQ(pipe.status, 0);
    EXPECT_THAT(pipe.error, IsEmpty());
}

TEST(ProgramTest, WatchWritesEachLineAtOnceUntilItIsToldToEnd)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        QProcess process;
        process.start(program, {u"watch"_s, u"--simulate"_s, u"basilisk-v3,basilisk-v3-pro-wired"_s});
        EXPECT_EQ(nextLine(process), "attached Razer Basilisk V3 (0x0099, USB cable)");
        EXPECT_EQ(nextLine(process), "attached Razer Basilisk V3 Pro (Wired) (0x00AA, USB cable)");
        EXPECT_EQ(nextLine(process), "battery Razer Basilisk V3 Pro (Wired) 78 % (charging)");
        ::kill(static_cast<pid_t>(process.processId()), signal);
        EXPECT_TRUE(process.waitForFinished(patience));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 0);
        EXPECT_THAT(process.readAll().toStdString() + process.readAllStandardError().toStdString(),
                    IsEmpty());
    }
    // With nothing more to write, it notices that its reader has gone.
    const auto json = shell("set -o pipefail; kelmothctl --simulate basilisk-v3 watch --json | head -n 1");
    EXPECT_EQ(json.status, 0);
    EXPECT_EQ(json.output, R"({"event":"attached","productID":153,"name":"Razer Basilisk V3",)"
                           R"("connection":"USB cable","transport":"USB","batteryLevel":null,)"
                           R"("isCharging":false,"path":"simulated:0/3"})"
                           "\n");
}

TEST(ProgramTest, TheManualNamesEveryWord)
{
    QFile file(QStringLiteral(KELMOTH_RESOURCES "/kelmothctl.1"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto manual = file.readAll().toStdString();
    for (const auto &word : wordsOfHelp()) {
        const auto macro = word.starts_with("--") ? "Fl \\-" + word.substr(2) : "Cm " + word;
        EXPECT_TRUE(manual.find(macro + ' ') != manual.npos || manual.find(macro + '\n') != manual.npos)
            << word;
    }
}

TEST(ProgramTest, TheShellCompletesEveryWord)
{
    const auto complete = [](const QString &line) {
        // The reply is one word a line.
        const auto result = shell("source \"$1\"; COMP_LINE=$2; COMP_POINT=${#2}; _kelmothctl; "
                                  "printf '%s\\n' \"${COMPREPLY[@]}\"",
                                  {QStringLiteral(KELMOTH_RESOURCES "/completions/kelmothctl.bash"), line});
        EXPECT_EQ(result.status, 0);
        EXPECT_THAT(result.error, IsEmpty());
        return result.output;
    };
    const auto offered = "\n" + complete(u"kelmothctl --json list --simulate "_s) +
                         complete(u"kelmothctl -"_s) + complete(u"kelmothctl --json "_s);
    for (const auto &word : wordsOfHelp()) {
        EXPECT_THAT(offered, HasSubstr("\n" + word + "\n"));
    }
    EXPECT_EQ(complete(u"kelmothctl list "_s), "\n");
    EXPECT_EQ(complete(u"kelmothctl --simulate=unknown,basilisk-v3-x-hyperspeed-2:"_s), "bluetooth\n");
    EXPECT_EQ(complete(u"kelmothctl --product 0x009"_s), "0x0099\n");
}

} // namespace
} // namespace kelmoth
