#include "Tests/UI/PanelFixture.h"
#include "UI/Views/PanelTranslator.h"

namespace kelmoth {

using ContentTest = PanelTest;

TEST_F(ContentTest, TheBadgeShowsTheCharge)
{
    const std::tuple<Int, bool, std::string> rows[]{
        {0, false, "battery.0"},        {14, false, "battery.0"},       {15, false, "battery.25"},
        {39, false, "battery.25"},      {40, false, "battery.50"},      {64, false, "battery.50"},
        {65, false, "battery.75"},      {89, false, "battery.75"},      {90, false, "battery.100"},
        {10, true, "battery.100.bolt"}, {97, true, "battery.100.bolt"},
    };
    open({"basilisk-v3-pro"});
    for (const auto &[percent, isCharging, icon] : rows) {
        charge(mouse(), percent, isCharging);
        EXPECT_EQ(panel->batteryText().toStdString(), std::to_string(percent) + "%");
        EXPECT_EQ(panel->batteryIcon().toStdString(), icon) << percent;
        EXPECT_TRUE(panel->showsBattery());
    }
    mouse().addFault({.kind = Kind::rejected, .commandClass = std::uint8_t{0x07}, .times = -1});
    mouse().unplug();
    mouse().replug();
    finishAll();
    EXPECT_EQ(panel->batteryText(), QStringLiteral("–"));
    EXPECT_EQ(panel->batteryIcon(), QStringLiteral("battery.0"));
    for (const auto *mouse : {"basilisk-v3", "basilisk-v3-pro:bluetooth", "stranger"}) {
        open({mouse});
        EXPECT_FALSE(panel->showsBattery()) << mouse;
    }
}

TEST_F(ContentTest, ShowsWhyAPageIsUnavailable)
{
    // The mouse and its connection, then the title and how the last line begins; none: the page can be used.
    using Text = const char *;
    using Row = std::tuple<Text, Text, Text, Text, Text>;
    for (const auto &[model, icon, connection, title, lastLine] : {
             Row{"", "wifi", "No connection", "No Device Connected", "Bluetooth configuration is"},
             Row{"stranger", "cable.connector", "USB cable", "Unsupported Device",
                 "This app supports only:\n"},
             Row{"basilisk-v3-pro:bluetooth", "wifi", "Bluetooth",
                 "Bluetooth connected: Razer Basilisk V3 Pro", "Use USB or a 2.4 GHz receiver"},
             Row{"basilisk-v3-x-hyperspeed:bluetooth", "wifi", "Bluetooth",
                 "Bluetooth connected: Razer Basilisk V3 X HyperSpeed", "Use the 2.4 GHz receiver"},
             Row{"basilisk-v3-x-hyperspeed", "wifi", "2.4 GHz receiver", nullptr, nullptr},
             Row{"basilisk-v3", "cable.connector", "USB cable", nullptr, nullptr},
         }) {
        SCOPED_TRACE(model);
        open(*model ? std::vector<std::string>{model} : std::vector<std::string>{});
        EXPECT_EQ(panel->isPageUsable(), title == nullptr);
        EXPECT_EQ(panel->connectionIcon().toStdString(), icon);
        EXPECT_EQ(panel->connectionLabel().toStdString(), connection);
        if (title) {
            EXPECT_EQ(panel->noticeTitle().toStdString(), title);
            EXPECT_THAT(texts(panel->noticeLines(), "label").back(), testing::StartsWith(lastLine));
        }
        panel->selectTab(ContentModel::settings);
        EXPECT_TRUE(panel->isPageUsable()) << "settings need no mouse";
    }
    const QSignalSpy changes(panel.get(), &ContentModel::pageChanged);
    panel->selectTab(ContentModel::buttons);
    mouse().unplug();
    finishAll();
    EXPECT_FALSE(panel->isPageUsable());
    EXPECT_GE(changes.size(), 2);
    EXPECT_EQ(panel->deviceName(), QStringLiteral("No Device"));
    EXPECT_EQ(panel->noticeIcon(), QStringLiteral("computermouse"));
    mouse().replug();
    finishAll();
    EXPECT_TRUE(panel->isPageUsable());
    EXPECT_EQ(panel->noticeTitle(), QStringLiteral("No Device Connected")) << "while it fades";
    EXPECT_THAT(texts(panel->noticeLines(), "gap"), ElementsAre("0", "4"));
}

TEST_F(ContentTest, EveryFormattedTextFollowsTheLanguage)
{
    PanelTranslator translator(preferences);
    QCoreApplication::installTranslator(&translator);
    const QSignalSpy retranslations(&translator, &PanelTranslator::retranslate);
    open({});
    const QSignalSpy headers(panel.get(), &ContentModel::headerChanged);
    const QSignalSpy versions(panel->about(), &AboutModel::versionTextChanged);
    const QSignalSpy footers(panel.get(), &ContentModel::footerTextChanged);
    EXPECT_EQ(QCoreApplication::translate("Anything", "Clutch"), QStringLiteral("Clutch"));
    EXPECT_EQ(panel->deviceName(), QStringLiteral("No Device"));
    const auto version = panel->about()->versionText();
    EXPECT_TRUE(version.startsWith(QStringLiteral("Version ")));

    preferences.chooseLanguage(1);
    EXPECT_EQ(retranslations.size(), 1);
    EXPECT_NE(QCoreApplication::translate("Anything", "Clutch"), QStringLiteral("Clutch"));
    EXPECT_EQ(QCoreApplication::translate("Anything", "not in a table"), QStringLiteral("not in a table"));
    EXPECT_NE(panel->deviceName(), QStringLiteral("No Device"));
    EXPECT_NE(panel->about()->versionText(), version);
    EXPECT_EQ(headers.size(), 1);
    EXPECT_EQ(versions.size(), 1);
    EXPECT_EQ(footers.size(), 1);
    QCoreApplication::removeTranslator(&translator);
}

TEST_F(ContentTest, TheAboutSheetAnimatesEachTime)
{
    open({});
    auto &about = *panel->about();
    for (int presentation = 0; presentation < 2; ++presentation) {
        panel->openAbout();
        EXPECT_TRUE(panel->showAbout());
        EXPECT_FALSE(about.appeared());
        about.shown();
        EXPECT_TRUE(about.appeared());
        panel->openAbout(); // it is there already
        EXPECT_TRUE(about.appeared());
        panel->closeAbout();
        EXPECT_FALSE(panel->showAbout());
    }
}

TEST_F(ContentTest, AToastKeepsItsTextWhileItLeaves)
{
    open({});
    auto &toast = *panel->toast();
    EXPECT_FALSE(toast.shown());
    toasts->error("Failed to set DPI");
    EXPECT_TRUE(toast.shown());
    toasts->success("Button remapped");
    EXPECT_EQ(toast.type(), 2);
    toast.hide();
    EXPECT_FALSE(toast.shown());
    EXPECT_EQ(toast.message(), QStringLiteral("Button remapped"));
}

TEST_F(ContentTest, TerminatingEndsTheProgram)
{
    open({});
    QMetaObject::invokeMethod(panel.get(), &ContentModel::terminate, Qt::QueuedConnection);
    EXPECT_EQ(QCoreApplication::exec(), 0);
}

/// A view's delegates stay where the rows change.
TEST(RowsModelTest, EmitsChangesOfTheChangedRowsOnly)
{
    RowsModel rows({"label", "selected"});
    rows.setRows({{QStringLiteral("a"), true}, {QStringLiteral("b"), false}});
    QSignalSpy changes(&rows, &RowsModel::dataChanged);
    QSignalSpy resets(&rows, &RowsModel::modelReset);
    QSignalSpy inserted(&rows, &RowsModel::rowsInserted);
    QSignalSpy removed(&rows, &RowsModel::rowsRemoved);
    rows.setRows({{QStringLiteral("a"), true}, {QStringLiteral("b"), true}, {QStringLiteral("c"), true}});
    ASSERT_EQ(changes.size(), 1);
    EXPECT_EQ(changes.front().front().toModelIndex().row(), 1);
    EXPECT_EQ(inserted.size(), 1);
    rows.setRows({{QStringLiteral("a"), true}});
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(removed.size(), 1);
    EXPECT_EQ(resets.size(), 0);
    EXPECT_EQ(rows.value(0, "label").toString(), QStringLiteral("a"));
    EXPECT_FALSE(rows.value(1, "label").isValid());
    EXPECT_FALSE(rows.value(0, "nothing").isValid());
}

} // namespace kelmoth
