#include "Platform/Linux/DBusNotifications.h"
#include "Tests/Desktop/PrivateBus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTest>
#include <gmock/gmock.h>

namespace kelmoth {

/// A notification service that answers when it is told to.
class FakeServer : public QDBusVirtualObject {
public:
    explicit FakeServer(const QDBusConnection &bus) : m_bus(bus)
    {
        m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/Notifications"), this);
        m_bus.registerService(QStringLiteral("org.freedesktop.Notifications"));
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &call, const QDBusConnection &) override
    {
        calls.push_back(call);
        return true;
    }
    /// The next call that has not been looked at: its name, the number in it, the title, the urgency.
    std::string next()
    {
        if (!QTest::qWaitFor([this] { return !calls.empty(); })) {
            return "none";
        }
        m_last = calls.takeFirst();
        const auto arguments = m_last.arguments();
        if (m_last.member() != QLatin1String("Notify")) {
            return (m_last.member() + QLatin1Char(' ') + arguments.value(0).toString()).toStdString();
        }
        const auto hints = qdbus_cast<QVariantMap>(arguments.value(6));
        const QStringList words{arguments.value(1).toString(), arguments.value(3).toString(),
                                arguments.value(4).toString(),
                                QString::number(hints[QStringLiteral("urgency")].toUInt())};
        return words.join(QLatin1Char(' ')).toStdString();
    }
    void answer(uint number) { m_bus.send(m_last.createReply(number)); }
    void refuse() { m_bus.send(m_last.createErrorReply(QDBusError::Failed, QStringLiteral("no"))); }

    QList<QDBusMessage> calls;

private:
    QDBusConnection m_bus;
    QDBusMessage m_last;
};

TEST(DBusNotificationsTest, ReplacesTheLastEvenIfTheServiceAnswersLate)
{
    const PrivateBus bus;
    DBusNotifications notifications(bus.connect());
    FakeServer server(bus.connect());
    notifications.show({"low", "mouse", false});
    EXPECT_EQ(server.next(), "0 low mouse 1");
    notifications.show({"skipped", "", false});
    notifications.show({"empty", "mouse", true});
    server.answer(7);
    EXPECT_EQ(server.next(), "7 empty mouse 2");
    server.answer(8);
    notifications.withdraw();
    EXPECT_EQ(server.next(), "CloseNotification 8");

    notifications.show({"low", "mouse", false});
    EXPECT_EQ(server.next(), "0 low mouse 1");
    notifications.show({"skipped", "", false});
    notifications.withdraw();
    server.answer(9);
    EXPECT_EQ(server.next(), "CloseNotification 9");

    notifications.show({"low", "mouse", false});
    EXPECT_EQ(server.next(), "0 low mouse 1");
    server.refuse();
    notifications.show({"empty", "mouse", true});
    EXPECT_EQ(server.next(), "0 empty mouse 2");
}

} // namespace kelmoth
