#include "App/TerseLog.h"
#include "Tests/Core/RecordedLog.h"

#include <QDir>
#include <QProcess>
#include <gmock/gmock.h>

#include <csignal>
#include <sys/stat.h>

namespace kelmoth {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr int waitTimeout = 30'000; // milliseconds

/// A run of the program in the test's own home, on a screen that nobody sees.
class Program : public QProcess {
public:
    explicit Program(const QString &arguments, const char *variable = "", const char *value = "")
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const auto *name : {"DBUS_SESSION_BUS_ADDRESS", "QT_QUICK_BACKEND", "QSG_RHI_BACKEND"}) {
            environment.remove(QString::fromLatin1(name));
        }
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), QDir::homePath());
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        if (*variable) {
            environment.insert(QString::fromLatin1(variable), QString::fromLatin1(value));
        }
        setProcessEnvironment(environment);
        setReadChannel(StandardError);
        start(QStringLiteral(KELMOTH), arguments.split(QLatin1Char(' ')));
    }

    /// Reads standard error until a text is in it.
    bool says(const std::string &text)
    {
        while (said.find(text) == std::string::npos) {
            if (!waitForReadyRead(waitTimeout)) {
                return false;
            }
            said += readAllStandardError().toStdString();
        }
        return true;
    }

    /// Waits for the end; -1 when there was none, or not by itself.
    int status()
    {
        const bool hasEnded = waitForFinished(waitTimeout);
        said += readAllStandardError().toStdString();
        return hasEnded && exitStatus() == NormalExit ? exitCode() : -1;
    }

    std::string said;
};

/// Puts a FIFO in place of a file in the home: to open it as a file is to wait for ever.
void plant(const char *name)
{
    const auto path = QDir::home().filePath(QString::fromLatin1(name));
    QDir().mkpath(QFileInfo(path).path());
    QFile::remove(path);
    EXPECT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
}

TEST(ProgramTest, HandlesArgumentsWithoutAScreen)
{
    constexpr auto kind = "QT_QPA_PLATFORM";
    Program help(QStringLiteral("--help"), kind, "none");
    EXPECT_EQ(help.status(), 0);
    EXPECT_THAT(help.readAllStandardOutput().toStdString(),
                AllOf(HasSubstr("--simulate MODEL[,MODEL...]"), HasSubstr("  basilisk-v3-pro-wired\n")));
    Program version(QStringLiteral("--version"), kind, "none");
    EXPECT_EQ(version.status(), 0);
    EXPECT_THAT(version.readAllStandardOutput().toStdString(), StartsWith("kelmoth "));
    Program wrong(QStringLiteral("--colour"), kind, "none");
    EXPECT_EQ(wrong.status(), 2);
    EXPECT_THAT(wrong.said, AllOf(HasSubstr("--colour"), HasSubstr("kelmoth --help")));
    Program unknown(QStringLiteral("--simulate elephant"));
    EXPECT_EQ(unknown.status(), 2);
    EXPECT_THAT(unknown.said, HasSubstr("\"elephant\""));
    plant("com.kelmoth.app.lock");
    EXPECT_EQ(Program(QStringLiteral("--quit")).status(), 0); // none runs
    const auto pictures = QDir::home().filePath(QStringLiteral("pictures"));
    plant("pictures/dpi-pl-dark.png");
    Program drawing(QStringLiteral("--screenshots %1 --scene dpi").arg(pictures));
    EXPECT_EQ(drawing.status(), 1);
    EXPECT_THAT(drawing.said, AllOf(HasSubstr("not drawn: "), HasSubstr("dpi-pl-dark.png")));
    EXPECT_TRUE(QFileInfo(pictures + QStringLiteral("/dpi-pl-light.png")).isFile());
}

TEST(ProgramTest, ShowsThePanelUntilASignal)
{
    plant("com.kelmoth.app.lock");
    plant("com.kelmoth.app/defaults.ini");
    Program program(QStringLiteral("--simulate basilisk-v3-pro-wired --verbose --show"), "QSG_INFO", "1");
    // The last command of a full read, by when the panel has been drawn.
    ASSERT_TRUE(program.says("00 1F 00 00 00 04 0B 8B")) << program.said;
    ::kill(static_cast<pid_t>(program.processId()), SIGTERM);
    EXPECT_EQ(program.status(), 0);
    EXPECT_THAT(program.said, AllOf(HasSubstr("defaults.ini: Is a FIFO\n"), HasSubstr("backend software"),
                                    Not(HasSubstr("qrc:")), Not(HasSubstr("QML"))));
}

TEST(ProgramTest, OmitsReportsFromTheLog)
{
    const auto recorded = std::make_shared<RecordedLog>();
    TerseLog log(recorded);
    for (const auto *line : {"Kelmoth v1 started", "📤 USB Report sent: 00", "⚠️ Lost", "📥 USB Response: 02",
                             "❌ Failed", "🔵 setZone"}) {
        log.write(line);
    }
    EXPECT_THAT(recorded->takeLines(),
                testing::ElementsAre("Kelmoth v1 started", "⚠️ Lost", "❌ Failed", "🔵 setZone"));
}

} // namespace
} // namespace kelmoth
