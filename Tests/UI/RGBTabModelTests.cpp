#include "Tests/UI/PanelFixture.h"

namespace kelmoth {

using testing::SizeIs;
using enum RGBZone;

class RGBTabTest : public TabTest<ContentModel::rgb> {
protected:
    RGBTabModel &tab() { return *panel->rgbTab(); }
    const RGBSetting &setting(RGBZone zone) const { return manager->deviceState().rgbSettings.at(zone); }

    /// Has the mouse light a zone so, without the panel.
    void light(RGBZone zone, RGBColor color, RGBEffect effect = RGBEffect::staticColor)
    {
        EXPECT_TRUE(finish(manager->setRGB(zone, {effect, color, std::nullopt, 0.5, 0.5})));
    }
};

TEST_F(RGBTabTest, TakesTheHueAndTheSwatchFromAColor)
{
    const std::tuple<RGBColor, double, std::optional<int>> rows[]{
        {{0, 255, 0}, 1 / 3.0, 0},
        {{128, 128, 128}, 1 / 3.0, 0}, // a grey leaves both
        {{255, 255, 255}, 1 / 3.0, 9},
        {{0, 255, 255}, 0.5, 1}, // near two: the first
        {{255, 0, 0}, 0.0, 6},
        {{255, 0, 64}, 1 - 64 / 255.0 / 6, std::nullopt}, // near red from below, where no swatch begins
        {{229, 229, 229}, 1 - 64 / 255.0 / 6, std::nullopt},
        {{230, 230, 230}, 1 - 64 / 255.0 / 6, 9},
    };
    open({"basilisk-v3"});
    for (const auto &[color, hue, preset] : rows) {
        light(scrollWheel, color);
        EXPECT_NEAR(tab().hue(), hue, 1e-9);
        EXPECT_EQ(tab().selectedPresetIndex(), preset) << hue;
        EXPECT_THAT(rowsThatAre(tab().presets(), "selected"), SizeIs(preset ? 1 : 0));
    }
}

TEST_F(RGBTabTest, SendsTheColorOfTheStripOrTheSwatch)
{
    const std::tuple<double, double, RGBColor> rows[]{
        {0.65, 0.65, {22, 43, 229}}, {0.0, 0.0, {229, 22, 22}},    {1.0, 1.0, {229, 22, 22}},
        {1.7, 1.0, {229, 22, 22}},   {-0.1, 0.0, {229, 22, 22}},   {0.25, 0.25, {126, 229, 22}},
        {0.4, 0.4, {22, 229, 105}},  {0.75, 0.75, {126, 22, 229}},
    };
    open({"basilisk-v3"});
    for (const auto &[position, hue, color] : rows) {
        tab().dragHue(position);
        EXPECT_EQ(tab().hue(), hue);
        EXPECT_EQ(tab().currentRGB(), color) << position;
        EXPECT_EQ(tab().selectedPresetIndex(), std::nullopt);
    }
    EXPECT_THAT(takeCommands(), IsEmpty());
    tab().pickPreset(9);
    finishWrite(tab());
    EXPECT_EQ(setting(scrollWheel).color, (RGBColor{255, 255, 255}));
    EXPECT_EQ(tab().hue(), 0.75) << "white has none";
    tab().pickPreset(3);
    finishWrite(tab());
    EXPECT_EQ(setting(scrollWheel).color, (RGBColor{22, 43, 229}));
    EXPECT_EQ(tab().currentColor().rgb(), QColor::fromHsvF(0.65F, 0.9F, 0.9F).rgb());
}

TEST_F(RGBTabTest, WritesAtTheEndOfADragAndShowsAToast)
{
    open({"basilisk-v3"});
    tab().dragHue(0.6543);
    tab().dragBrightness(0.295);
    EXPECT_EQ(tab().brightnessText(), QStringLiteral("29%"));
    tab().endBrightnessDrag();
    tab().endHueDrag(); // dropped
    tab().dragHue(0.1);
    finishWrite(tab());
    EXPECT_EQ(tab().hue(), 0.1) << "what was written does not take the strip out of the hand";
    EXPECT_EQ(setting(scrollWheel).brightness, 0.295);
    EXPECT_EQ(setting(scrollWheel).speed, 0.5);
    EXPECT_THAT(takeLines(), ElementsAre("🟡 Brightness drag ended: 0.29",
                                         "🔵 RGBTabView: applySettings() STARTED - effect=static "
                                         "brightness=0.29",
                                         "🔵 RGBTabView: RGB color=(22,38,229)",
                                         "🔵 RGBTabView: Creating Task to call setRGB",
                                         "🔵 RGBTabView: applySettings() FINISHED (Task created)",
                                         "🟣 Hue slider ended: 0.65",
                                         "🔵 RGBTabView: Task started, calling deviceManager.setRGB()",
                                         "🔵 RGBTabView: setRGB returned: ✅"));

    refuse(0x0F, 0x02);
    tab().pickEffect(0);
    EXPECT_TRUE(tab().isOff());
    finishWrite(tab());
    EXPECT_FALSE(tab().isOff()) << "what the mouse last accepted";
    const auto lines = takeLines();
    EXPECT_EQ(lines.front(), "🔴 RGB Button clicked: off");
    EXPECT_EQ(lines.back(), "🔵 RGBTabView: setRGB returned: ❌");
}

TEST_F(RGBTabTest, ClampsAStoredBrightness)
{
    const std::pair<double, QString> rows[]{{1e308, QStringLiteral("100%")}, {-1e308, QStringLiteral("0%")}};
    open({"basilisk-v3"});
    light(scrollWheel, {0, 255, 0}); // half as bright as it can be
    for (const auto &[stored, text] : rows) {
        mouse().unplug();
        settle();
        auto state = manager->deviceState();
        state.rgbSettings[scrollWheel].brightness = stored;
        defaults->setData("com.kelmoth.deviceState.153", encode(state).value());
        QStringList shown; // the stored light, then that of the mouse
        const auto watch = QObject::connect(&tab(), &RGBTabModel::lightChanged, &tab(),
                                            [&] { shown.append(tab().brightnessText()); });
        mouse().replug();
        settle();
        QObject::disconnect(watch);
        EXPECT_TRUE(shown.contains(text)) << shown.join(QLatin1Char(' ')).toStdString();
    }
}

TEST_F(RGBTabTest, OffersTheModelsZonesAndEffects)
{
    const std::tuple<std::vector<std::string>, std::vector<std::string>, int> rows[]{
        {{"basilisk-v3"}, {"Off", "Static", "Spectrum", "Wave"}, 3},
        {{"basilisk-v3-x-hyperspeed"}, {"Off", "Static", "Breathe", "Spectrum", "Wave", "Reactive"}, 1},
        {{}, {}, 1},
    };
    for (const auto &[models, effects, zones] : rows) {
        open(models);
        EXPECT_EQ(texts(tab().effects(), "label"), effects);
        EXPECT_EQ(tab().zoneTitles().size(), zones);
        EXPECT_EQ(tab().showsZonePicker(), zones > 1);
    }
    tab().pickPreset(1);
    finishWrite(tab());
    EXPECT_THAT(messages, ElementsAre("No device connected"));
}

TEST_F(RGBTabTest, EachZoneHasItsOwnSetting)
{
    open({"basilisk-v3", "basilisk-v3-x-hyperspeed"});
    light(logo, {255, 0, 0}, RGBEffect::wave);
    EXPECT_EQ(tab().selectedEffect(), RGBEffect::staticColor);
    tab().pickZone(1);
    Q_EMIT manager->connectedDeviceChanged(); // its battery
    EXPECT_EQ(tab().zone(), logo);
    EXPECT_EQ(tab().selectedEffect(), RGBEffect::wave);
    EXPECT_EQ(tab().selectedPresetIndex(), 6);

    tab().dragHue(0.2);
    EXPECT_TRUE(finish(manager->setDPIStage(3)));
    EXPECT_EQ(tab().hue(), 0.2) << "another setting has changed";

    tab().pickPreset(2);
    panel->selectTab(ContentModel::settings);
    panel->selectTab(ContentModel::rgb); // a new page, on the first zone
    EXPECT_EQ(tab().zone(), scrollWheel);
    finishAll();
    EXPECT_NE(setting(logo).color, (RGBColor{255, 0, 0})) << "the change was for the zone of then";
    EXPECT_NE(setting(logo).color, setting(scrollWheel).color);

    tab().pickZone(2);
    mice.front()->unplug();
    finishAll();
    EXPECT_EQ(tab().zone(), scrollWheel);
    EXPECT_FALSE(tab().showsZonePicker());
}

} // namespace kelmoth
