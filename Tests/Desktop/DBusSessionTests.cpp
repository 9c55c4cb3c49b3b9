#include "Platform/Linux/DBusSession.h"
#include "Platform/Linux/RunningProcess.h"
#include "Tests/Desktop/PrivateBus.h"

#include <QTest>
#include <gmock/gmock.h>

#include <cstdlib>
#include <optional>
#include <sys/wait.h>
#include <unistd.h>

namespace kelmoth {

using namespace std::chrono_literals;

const auto identifier = QStringLiteral("com.kelmoth.app");
constexpr auto about = "com.kelmoth.app";
constexpr auto reopen = "com.kelmoth.app.reopenRunningInstance";

class DBusSessionTest : public testing::Test {
protected:
    /// Observes, and waits until others can know.
    void observe(DBusSession &session)
    {
        session.observe(reopen, about, [this] { ++calls; });
        ASSERT_TRUE(QTest::qWaitFor([&] { return !other().runningApplications(about).empty(); }));
    }

    DBusSession &other()
    {
        if (!m_other) {
            m_other.emplace(bus.connect(), identifier);
        }
        return *m_other;
    }

    PrivateBus bus;
    int calls = 0;

private:
    std::optional<DBusSession> m_other;
};

TEST_F(DBusSessionTest, CopiesFindAndNotifyEachOther)
{
    DBusSession session(bus.connect(), identifier);
    EXPECT_TRUE(session.runningApplications(about).empty());
    observe(session);
    const auto running = other().runningApplications(about);
    ASSERT_EQ(running.size(), 1U);
    EXPECT_EQ(running[0].processIdentifier, ::getpid());
    EXPECT_FALSE(running[0].isTerminated);

    session.post(reopen, about); // its own voice is nobody's
    other().post(reopen, about);
    EXPECT_TRUE(QTest::qWaitFor([this] { return calls > 0; }));
    EXPECT_EQ(calls, 1);

    session.removeObserver();
    EXPECT_TRUE(QTest::qWaitFor([this] { return other().runningApplications(about).empty(); }));
}

/// Its parent has not noticed yet, and a child of its own holds the connection.
TEST_F(DBusSessionTest, AnEndedCopyIsNotRunning)
{
    QProcess copy;
    copy.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-c"), QStringLiteral(R"(
import os, sys
from gi.repository import Gio
bus = Gio.DBusConnection.new_for_address_sync(sys.argv[1], Gio.DBusConnectionFlags(9), None, None)
Gio.bus_own_name_on_connection(bus, "com.kelmoth.app", 0, None, None)
bus.call_sync("org.freedesktop.DBus", "/", "org.freedesktop.DBus.Peer", "Ping", None, None, 0, -1, None)
os.fork() or sys.stdin.read()
os._exit(0))"),
                                                    bus.address()});
    bool hasEnded = false;
    for (const QDeadlineTimer limit(60'000); !hasEnded && !limit.hasExpired();) { // and no event loop runs
        const auto running = other().runningApplications(about);
        hasEnded = !running.empty() && running[0].isTerminated;
    }
    EXPECT_TRUE(hasEnded);
    copy.closeWriteChannel();
    copy.waitForFinished();
}

TEST_F(DBusSessionTest, DeliversNotificationsFromBeforeTheObserver)
{
    DBusSession session(bus.connect(), identifier);
    EXPECT_TRUE(session.runningApplications(about).empty()); // the bus has heard of it
    other().post(reopen, about);
    QTest::qWait(0);
    session.observe(reopen, about, [this] { ++calls; });
    EXPECT_TRUE(QTest::qWaitFor([this] { return calls == 1; }));
}

TEST_F(DBusSessionTest, IgnoresSignalsOfStrangers)
{
    DBusSession session(bus.connect(), identifier);
    observe(session);
    auto stranger = QDBusConnection::connectToBus(bus.address(), QStringLiteral("stranger"));
    const auto send = [&](const char *member, const QVariantList &arguments) {
        auto signal = QDBusMessage::createSignal(QStringLiteral("/com/kelmoth/app"), identifier,
                                                 QString::fromLatin1(member));
        signal.setArguments(arguments);
        EXPECT_TRUE(stranger.send(signal));
    };
    const QVariantList strange[]{{}, {7}, {QStringLiteral("com.example")}, {identifier, identifier}};
    std::ranges::for_each(strange, [&](const auto &arguments) { send("reopenRunningInstance", arguments); });
    send("reopenRunningInstance", {QString(1 << 22, QLatin1Char('x'))});
    send("quitRunningInstance", {identifier});
    send("reopenRunningInstance", {identifier}); // all before it have arrived once this has
    EXPECT_TRUE(QTest::qWaitFor([this] { return calls > 0; }));
    EXPECT_EQ(calls, 1);
    QDBusConnection::disconnectFromBus(QStringLiteral("stranger"));
}

TEST_F(DBusSessionTest, ReportsItsEndAndWorksWithoutABus)
{
    auto dying = std::make_unique<PrivateBus>();
    DBusSession ending(dying->connect(), identifier);
    bool hasEnded = false;
    ending.setEndHandler([&] { hasEnded = true; });
    dying.reset();
    EXPECT_TRUE(QTest::qWaitFor([&] { return hasEnded; }));

    DBusSession alone(QDBusConnection(QString()), identifier);
    alone.observe(reopen, about, [] {});
    alone.post(reopen, about);
    EXPECT_TRUE(alone.runningApplications(about).empty());
}

TEST(SessionBusAddress, ComesFromTheEnvironmentOrTheRuntimeDirectory)
{
    const QTemporaryDir runtime;
    qputenv("XDG_RUNTIME_DIR", runtime.path().toUtf8());
    qputenv("DBUS_SESSION_BUS_ADDRESS", "");
    EXPECT_EQ(sessionBusAddress(), QString());
    QFile socket(runtime.filePath(QStringLiteral("bus")));
    ASSERT_TRUE(socket.open(QIODevice::WriteOnly));
    EXPECT_EQ(sessionBusAddress(), QStringLiteral("unix:path=") + socket.fileName());
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/elsewhere");
    EXPECT_EQ(sessionBusAddress(), QStringLiteral("unix:path=/elsewhere"));
}

TEST(RunningProcessTest, EndsOnRequestOrTimesOut)
{
    const auto start = [](const QString &script) {
        auto process = std::make_unique<QProcess>();
        process->start(QStringLiteral("sh"), {QStringLiteral("-c"), script});
        EXPECT_TRUE(process->waitForReadyRead());
        return process;
    };
    const auto polite = start(QStringLiteral("echo; exec sleep 1000"));
    EXPECT_EQ(endProcess(polite->processId(), 10s), EndOfProcess::ended);
    polite->waitForFinished();
    const auto deaf = start(QStringLiteral("trap '' TERM; echo; while :; do read -r line; done <&2"));
    EXPECT_EQ(endProcess(deaf->processId(), 50ms), EndOfProcess::stillRunning);
    deaf->kill();
    deaf->waitForFinished();
    EXPECT_EQ(endProcess(deaf->processId(), 1s), EndOfProcess::refused);
}

TEST(RunningProcessTest, AZombieHasEnded)
{
    const auto child = ::fork();
    if (child == 0) {
        std::_Exit(0);
    }
    ASSERT_EQ(::waitid(P_PID, static_cast<::id_t>(child), nullptr, WEXITED | WNOWAIT), 0);
    EXPECT_TRUE(hasEnded(child));
    ::waitpid(child, nullptr, 0);
    EXPECT_TRUE(hasEnded(child));
    EXPECT_FALSE(hasEnded(::getpid()));
}

} // namespace kelmoth
