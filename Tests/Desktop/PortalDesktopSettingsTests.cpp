#include "Platform/Linux/PortalDesktopSettings.h"
#include "Tests/Desktop/PrivateBus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <QTest>
#include <gmock/gmock.h>

#include <cmath>

namespace kelmoth {

using Settings = QMap<QString, QVariantMap>;

const auto appearance = QStringLiteral("org.freedesktop.appearance");
const auto gnome = QStringLiteral("org.gnome.desktop.interface");
const auto accessibility = QStringLiteral("org.gnome.desktop.a11y.interface");
constexpr auto duration = "AnimationDurationFactor";
constexpr auto textScaling = "text-scaling-factor";
const auto plasma = QStringLiteral("org.kde.kdeglobals.KDE");

static QVariant twice(const QVariant &value)
{
    return QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(value))));
}

static QVariant color(double red, double green, double blue)
{
    QDBusArgument channels;
    channels.beginStructure();
    channels << red << green << blue;
    channels.endStructure();
    return QVariant::fromValue(channels);
}

static QVariant one(const QString &settingsNamespace, const char *key, const QVariant &value)
{
    return QVariant::fromValue(Settings{{settingsNamespace, {{QString::fromLatin1(key), value}}}});
}

/// What several portals say of the same setting, as one answer; the desktop's own comes first.
static QVariant inTurn(const QString &settingsNamespace, const char *key, const QVariantList &values)
{
    QDBusArgument all;
    all.beginMap(QMetaType::fromType<QString>(), QMetaType::fromType<QVariantMap>());
    for (const auto &value : values) {
        all.beginMapEntry();
        all << settingsNamespace << QVariantMap{{QString::fromLatin1(key), value}};
        all.endMapEntry();
    }
    all.endMap();
    return QVariant::fromValue(all);
}

/// A portal at the other end of a bus. It answers with `answer`, or not at all while that is absent.
class FakePortal : public QDBusVirtualObject {
public:
    explicit FakePortal(const QDBusConnection &bus) : m_bus(bus)
    {
        m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this);
    }

    void appear() { m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")); }
    void vanish() { m_bus.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop")); }
    void tellOfChange(const QString &settingsNamespace)
    {
        auto signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                 QStringLiteral("org.freedesktop.portal.Settings"),
                                                 QStringLiteral("SettingChanged"));
        m_bus.send(signal << settingsNamespace << QStringLiteral("key") << twice(1));
    }
    void answerLate() { m_bus.send(m_last.createReply(*answer)); }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &call, const QDBusConnection &bus) override
    {
        ++calls;
        m_last = call;
        return !answer || bus.send(call.createReply(*answer));
    }
    QVariantList asked() const { return m_last.arguments(); }

    std::optional<QVariant> answer = QVariant::fromValue(Settings{});
    int calls = 0;

private:
    QDBusConnection m_bus;
    QDBusMessage m_last;
};

class PortalDesktopSettingsTest : public testing::Test {
protected:
    PortalDesktopSettingsTest() { qDBusRegisterMetaType<Settings>(); }

    PrivateBus bus;
    FakePortal portal{bus.connect()};
};

TEST_F(PortalDesktopSettingsTest, ReadsTheSettingsOfEachDesktop)
{
    struct Row {
        const char *what;
        QVariant told;
        ColorScheme scheme = ColorScheme::noPreference;
        std::optional<std::uint32_t> accent = std::nullopt;
        bool reduceMotion = false;
        bool reduceTransparency = false;
        double textScale = 1;
    };
    constexpr auto none = ColorScheme::noPreference;
    QVariantMap crowd;
    for (int i = 0; i < 50'000; ++i) {
        crowd.insert(QString::number(i), true);
    }
    const std::vector<Row> rows{
        {"dark", one(appearance, "color-scheme", 1U), ColorScheme::dark},
        {"light, in two variants", one(appearance, "color-scheme", twice(2U)), ColorScheme::light},
        {"scheme as text", one(appearance, "color-scheme", QStringLiteral("1"))},
        {"scheme of another namespace", one(gnome, "color-scheme", 1U)},
        {"accent", one(appearance, "accent-color", color(1.0, 0.5, 0.0)), none, 0xFF8000},
        {"no accent", one(appearance, "accent-color", color(-1.0, -1.0, -1.0))},
        {"accent beyond 1", one(appearance, "accent-color", color(0.1, 0.2, 1.01))},
        {"accent not a number", one(appearance, "accent-color", color(0.1, std::nan(""), 0.2))},
        {"accent as list", one(appearance, "accent-color", QVariant::fromValue(QList{1.0, 0.5, 0.0}))},
        {"contrast", one(appearance, "contrast", 1U), none, {}, false, true},
        {"high contrast", one(accessibility, "high-contrast", true), none, {}, false, true},
        {"animated", one(gnome, "enable-animations", true)},
        {"not animated", one(gnome, "enable-animations", false), none, {}, true},
        {"animations as number", one(gnome, "enable-animations", 0U)},
        {"no duration, as text", one(plasma, duration, QStringLiteral("0")), none, {}, true},
        {"no duration", one(plasma, duration, 0.0), none, {}, true},
        {"some duration", one(plasma, duration, QStringLiteral("0.5"))},
        {"duration no number", one(plasma, duration, QString())},
        {"duration as bool", one(plasma, duration, false)},
        {"dark, then no preference", inTurn(appearance, "color-scheme", {1U, 0U}), ColorScheme::dark},
        {"accent, then none", inTurn(appearance, "accent-color", {color(0, 0, 1), color(-1, -1, -1)}), none,
         0xFF},
        {"animated, then not", inTurn(gnome, "enable-animations", {true, false})},
        {"large texts", one(gnome, textScaling, 1.25), none, {}, false, false, 1.25},
        {"large texts, then usual ones", inTurn(gnome, textScaling, {3.0, 1.0}), none, {}, false, false, 3},
        {"texts too large", inTurn(gnome, textScaling, {3.01, 1.25})},
        {"texts too small", one(gnome, textScaling, 0.49)},
        {"texts of no size", one(gnome, textScaling, std::nan(""))},
        {"texts of a size that is no fraction", one(gnome, textScaling, 2U)},
        {"texts of another namespace", one(accessibility, textScaling, 2.0)},
        {"a text", QStringLiteral("dark")},
        {"a map of another kind", QVariantMap{{appearance, 1U}}},
        {"a crowd", QVariant::fromValue(Settings{{plasma, crowd}})},
    };
    portal.appear();
    for (const auto &row : rows) {
        SCOPED_TRACE(row.what);
        portal.answer = row.told;
        portal.calls = 0;
        PortalDesktopSettings settings(bus.connect());
        int changes = 0;
        settings.setChangeHandler([&changes] { ++changes; });
        // A second round: the answer to the first has been taken by then.
        ASSERT_TRUE(QTest::qWaitFor([&] { return portal.calls == 1; }));
        portal.tellOfChange(appearance);
        ASSERT_TRUE(QTest::qWaitFor([&] { return portal.calls == 2; }));

        EXPECT_EQ(settings.colorScheme(), row.scheme);
        EXPECT_EQ(settings.accentColor(), row.accent);
        EXPECT_EQ(settings.reduceMotion(), row.reduceMotion);
        EXPECT_EQ(settings.reduceTransparency(), row.reduceTransparency);
        EXPECT_EQ(settings.textScale(), row.textScale);
        const bool isAny = row.scheme != none || row.accent || row.reduceMotion || row.reduceTransparency ||
                           row.textScale != 1;
        EXPECT_EQ(changes, isAny ? 1 : 0);
    }
    EXPECT_EQ(portal.asked(), (QVariantList{QStringList{appearance, gnome, accessibility, plasma}}));
}

TEST_F(PortalDesktopSettingsTest, FollowsThePortalsStartChangesAndEnd)
{
    const auto dark = one(appearance, "color-scheme", 1U);
    const auto light = one(appearance, "color-scheme", 2U);
    PortalDesktopSettings settings(bus.connect());
    int changes = 0;
    settings.setChangeHandler([&changes] { ++changes; });
    EXPECT_EQ(settings.colorScheme(), ColorScheme::noPreference);
    const auto expectNext = [&](ColorScheme scheme) {
        ASSERT_TRUE(QTest::qWaitFor([&, next = changes + 1] { return changes == next; }));
        EXPECT_EQ(settings.colorScheme(), scheme);
    };
    portal.answer = dark;
    portal.appear();
    expectNext(ColorScheme::dark);
    portal.answer = light;
    portal.tellOfChange(plasma);
    expectNext(ColorScheme::light);
    // A portal that is started again says nothing meanwhile.
    portal.vanish();
    portal.answer = dark;
    portal.appear();
    expectNext(ColorScheme::dark);
}

TEST_F(PortalDesktopSettingsTest, QueriesOnceMoreAfterManyChanges)
{
    portal.appear();
    portal.answer.reset();
    PortalDesktopSettings settings(bus.connect());
    bool isChanged = false;
    settings.setChangeHandler([&isChanged] { isChanged = true; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return portal.calls == 1; }));
    for (int i = 0; i < 1000; ++i) {
        portal.tellOfChange(gnome);
    }
    portal.tellOfChange(QStringLiteral("org.gnome.desktop.sound"));
    portal.answer = one(gnome, "enable-animations", false);
    portal.answerLate();
    ASSERT_TRUE(QTest::qWaitFor([&] { return isChanged && portal.calls == 2; }));
    EXPECT_TRUE(settings.reduceMotion());
}

TEST(PortalWithoutABus, SaysNothing)
{
    const PortalDesktopSettings settings{QDBusConnection(QString())};
    QCoreApplication::processEvents();
    EXPECT_EQ(settings.colorScheme(), ColorScheme::noPreference);
}

} // namespace kelmoth
