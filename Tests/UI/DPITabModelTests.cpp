#include "Tests/UI/PanelFixture.h"
#include "UI/Views/Texts.h"

#include <cmath>

namespace kelmoth {

TEST(DPITextsTest, AreShortAndInEveryLanguageTheSame)
{
    const std::tuple<Int, std::string, std::string> rows[]{
        {0, "0", "0"},           {850, "850", "850"},           {1000, "1 000", "1K"},
        {2400, "2 400", "2.4K"}, {12500, "12 500", "12.5K"},    {26000, "26 000", "26K"},
        {999, "999", "999"},     {1950, "1 950", "1.9K"},       {1234567, "1 234 567", "1234.6K"},
        {-450, "-450", "-450"},  {-16000, "-16 000", "-16000"},
    };
    for (const auto &[dpi, formatted, shortened] : rows) {
        EXPECT_EQ(formattedDPI(dpi), formatted);
        EXPECT_EQ(shortDPI(dpi), shortened);
    }
}

class DPITabTest : public PanelTest {
protected:
    static constexpr Code setStages{0x04, 0x06};

    DPITabModel &tab() { return *panel->dpiTab(); }
    const DeviceState &state() const { return manager->deviceState(); }
};

TEST_F(DPITabTest, ShowsTheActiveStageAndWhatTheModelOffers)
{
    const std::tuple<std::vector<std::string>, int, std::string> rows[]{
        {{"basilisk-v3"}, 26000, "26K"}, {{"basilisk-v3-pro"}, 30000, "30K"}, {{}, 18000, "18K"}};
    for (const auto &[models, maxDPI, label] : rows) {
        open(models);
        EXPECT_EQ(tab().maxDPI(), maxDPI);
        EXPECT_EQ(tab().maxDPIText().toStdString(), label);
        EXPECT_EQ(tab().presets()->count(), 8);
        EXPECT_EQ(texts(tab().presets(), "label").back(), label);
    }
    tab().pickPreset(800);
    finishWrite(tab());
    tab().pickStage(0);
    finishWrite(tab());
    EXPECT_THAT(messages, ElementsAre("No device connected")) << "a tap without a mouse is answered";

    open({"basilisk-v3"});
    tab().pickStage(2);
    finishWrite(tab());
    EXPECT_EQ(tab().shownDPIText(), QStringLiteral("1 600"));
    EXPECT_EQ(tab().stageText(), QStringLiteral("Stage 3"));
    EXPECT_EQ(tab().sliderDPI(), 1600);
    EXPECT_THAT(texts(tab().stages(), "label"), ElementsAre("400", "800", "1.6K", "3.2K", "6.4K"));
    EXPECT_THAT(rowsThatAre(tab().stages(), "selected"), ElementsAre(2));
    EXPECT_THAT(rowsThatAre(tab().presets(), "selected"), ElementsAre(2));

    const QSignalSpy changes(&tab(), &DPITabModel::stageTextChanged);
    preferences.chooseLanguage(1);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_NE(tab().stageText(), QStringLiteral("Stage 3"));
}

TEST_F(DPITabTest, ADragWritesOnceAtItsEnd)
{
    open({"basilisk-v3"});
    tab().pickStage(1);
    finishWrite(tab());
    takeCommands();

    tab().moveSlider(5000);
    EXPECT_EQ(tab().sliderDPI(), 800) << "nobody drags it";
    tab().startEditing();
    const std::pair<double, double> moves[]{{1249, 1200},   {1250, 1300}, {-1e300, 100},
                                            {1e300, 26000}, {NAN, 26000}, {5040, 5000}};
    for (const auto &[to, dpi] : moves) {
        tab().moveSlider(to);
        EXPECT_EQ(tab().sliderDPI(), dpi) << to;
        EXPECT_EQ(tab().shownDPIText().toStdString(), formattedDPI(static_cast<Int>(dpi)));
    }
    finishAll();
    EXPECT_TRUE(finish(manager->setDPI(900, 1)));
    EXPECT_EQ(tab().sliderDPI(), 5000) << "the hand is on it";
    EXPECT_EQ(tab().shownDPIText(), QStringLiteral("5 000"));
    takeCommands();

    tab().endEditing();
    tab().endEditing();
    finishWrite(tab());
    EXPECT_THAT(takeCommands(), ElementsAre(setStages));
    EXPECT_EQ(state().dpiStages[1].dpi, 5000);
    EXPECT_EQ(tab().sliderDPI(), 5000);

    refuse(0x04, 0x06);
    tab().startEditing();
    tab().moveSlider(7000);
    tab().endEditing();
    EXPECT_EQ(tab().shownDPIText(), QStringLiteral("5 000"));
    finishWrite(tab());
    EXPECT_EQ(tab().sliderDPI(), 5000) << "it snaps back";
    EXPECT_THAT(messages, ElementsAre("Failed to set DPI"));
}

TEST_F(DPITabTest, OneWriteAtATime)
{
    open({"basilisk-v3"});
    time->hold();
    tab().pickPreset(12000);
    tab().pickStage(4);
    EXPECT_TRUE(tab().isApplying());
    EXPECT_FALSE(tab().isEnabled());
    time->release();
    finishWrite(tab());
    EXPECT_TRUE(tab().isEnabled());
    EXPECT_THAT(takeCommands(), ElementsAre(setStages));
    EXPECT_EQ(tab().shownDPIText(), QStringLiteral("12 000"));

    bool wasEnabled = true;
    QObject::connect(manager.get(), &DeviceManager::isSyncingChanged, &tab(),
                     [&] { wasEnabled = manager->isSyncing() && tab().isEnabled(); });
    QCoro::waitFor(manager->refreshFromDevice(false));
    EXPECT_FALSE(wasEnabled);
    EXPECT_TRUE(tab().isEnabled());
}

TEST_F(DPITabTest, AWriteOutlivesItsPageAndItsPanel)
{
    open({"basilisk-v3"});
    time->hold();
    tab().pickPreset(12000);
    panel->selectTab(ContentModel::rgb);
    panel->selectTab(ContentModel::dpi);
    EXPECT_FALSE(tab().isApplying()) << "the page is a new one";
    tab().startEditing();
    tab().moveSlider(300);
    time->release();
    finishAll();
    EXPECT_EQ(tab().sliderDPI(), 300);
    EXPECT_THAT(takeCommands(), ElementsAre(setStages));

    time->hold();
    tab().endEditing();
    QCoreApplication::processEvents();
    panel.reset();
    time->release();
    finishAll();
    EXPECT_THAT(takeCommands(), ElementsAre(setStages));
    EXPECT_EQ(state().dpiStages[static_cast<std::size_t>(state().currentDPIStage)].dpi, 300);
}

} // namespace kelmoth
