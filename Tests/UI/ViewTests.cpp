#include "Tests/UI/ViewFixture.h"
#include "UI/Views/Texts.h"

namespace kelmoth {

TEST_F(ProViewTest, ATapWritesToTheMouseAndShowsItsAnswer)
{
    const auto light = [this] { return mouse().state().lights.at(RGBZone::logo); };
    // What is tapped and on which page, what the mouse holds, and what it holds afterwards.
    const std::vector<std::tuple<int, const char *, QAccessible::Role, std::function<int()>, int>> taps{
        {ContentModel::dpi, "Stage 3", radio, [&] { return mouse().state().activeStage; }, 3},
        {ContentModel::dpi, "12K", radio, [&] { return mouse().state().dpiStages.at(2); }, 12000},
        {ContentModel::rgb, "Logo", QAccessible::PageTab, [] { return 0; }, 0},
        {ContentModel::rgb, "Color preset 7", radio, [&] { return light().parameters[3]; }, 229},
        {ContentModel::rgb, "Off", radio, [&] { return light().effect; }, 0},
        {ContentModel::settings, "High", radio, [&] { return mouse().state().liftOff; }, 2},
    };
    for (const auto &[page, name, role, held, afterwards] : taps) {
        SCOPED_TRACE(name);
        panel->selectTab(page);
        click(name, role);
        finishAll();
        EXPECT_EQ(held(), afterwards);
        const auto now = state(name, role);
        EXPECT_TRUE(now.checked || now.selected);
        EXPECT_FALSE(now.disabled);
    }
    EXPECT_TRUE(find("High (3 mm)", caption));
    EXPECT_THAT(messages, IsEmpty());
}

TEST_F(ProViewTest, ADragOfTheSliderIsShownWhileItLastsAndWrittenAtItsEnd)
{
    auto *handle = find("DPI", slider);
    ASSERT_TRUE(handle);
    const QPoint middle = view->mapFromGlobal(handle->rect().center());
    QTest::mousePress(view.get(), Qt::LeftButton, {}, middle);
    const auto shown = panel->dpiTab()->shownDPIText().toUtf8();
    EXPECT_TRUE(find(shown.constData(), caption));
    EXPECT_THAT(takeCommands(), IsEmpty());
    QTest::mouseRelease(view.get(), Qt::LeftButton, {}, middle);
    finishAll();
    const int dragged = mouse().state().dpiStages.at(0);
    EXPECT_NEAR(dragged, 15000, 200);
    EXPECT_EQ(formattedDPI(dragged), shown.toStdString());
    EXPECT_EQ(handle->valueInterface()->currentValue().toInt(), dragged);

    handle->valueInterface()->setCurrentValue(800);
    finishAll();
    EXPECT_EQ(mouse().state().dpiStages.at(0), 800);
    EXPECT_TRUE(state("800", radio).checked);
}

TEST_F(ProViewTest, AStripMapsItsWholeWidthAndClamps)
{
    panel->selectTab(ContentModel::rgb);
    drag("Hue", slider, 0.5, 1.04);
    finishAll();
    const auto light = mouse().state().lights.at(RGBZone::scrollWheel);
    EXPECT_THAT(std::span(light.parameters).subspan(3, 3), ElementsAre(229, 22, 22));
    for (const auto &[end, brightness] : {std::pair(-0.04, 0), std::pair(0.05, 12)}) {
        drag("Brightness", slider, 0.5, end);
        finishAll();
        EXPECT_NEAR(mouse().state().lights.at(RGBZone::scrollWheel).brightness, brightness, 1);
    }
    key(Qt::Key_Right);
    finishAll();
    EXPECT_TRUE(find("9%", caption) || find("10%", caption));
}

TEST_F(ProViewTest, TheLightFadesOverAtATapAndFollowsADragAtOnce)
{
    panel->selectTab(ContentModel::rgb);
    setMotion(true);
    const auto fades = [this] { return shown("turn") != std::vector<double>{1}; };
    for (const char *tapped : {"Color preset 7", "Off", "Static"}) {
        press(tapped, radio);
        EXPECT_TRUE(fades()) << tapped;
        finishAll();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !fades(); })) << tapped;
    }
    drag("Hue", slider, 0.5, 0.7);
    EXPECT_FALSE(fades());
}

TEST_F(ProViewTest, AButtonIsGivenAnActionAKeyAndAProfile)
{
    const auto &assigned = manager->deviceState().buttonMappings;
    panel->selectTab(ContentModel::buttons);
    EXPECT_TRUE(state("Back", button).collapsed);
    click("Back", button);
    EXPECT_TRUE(state("Back", button).expanded);
    EXPECT_TRUE(state("Back", radio).checked);
    click("Double Click", radio);
    finishAll();
    EXPECT_EQ(assigned.at(MouseButton::back), ButtonAction::doubleClick());
    EXPECT_EQ(find("Back", button)->text(QAccessible::Description), QStringLiteral("Double Click"));
    EXPECT_TRUE(state("Back", button).collapsed);
    EXPECT_FALSE(find("Double Click", radio));

    click("Clutch", button); // far down: it scrolls into sight
    press("Keyboard Key", radio);
    click("⌃ Ctrl", QAccessible::CheckBox);
    EXPECT_TRUE(state("⌃ Ctrl", QAccessible::CheckBox).checked);
    setMotion(true);
    press("left arrow", button);
    finishWrite(*panel->buttonsTab());
    EXPECT_EQ(assigned.at(MouseButton::clutch), ButtonAction::keyPress("ctrl+left"));
    int looks = 0;                    // once it has closed: it still swings
    EXPECT_TRUE(QTest::qWaitFor([&] { // the picker closes, with all that is in it
        EXPECT_GT(find("Bottom Button", button)->rect().top(), find("Clutch", button)->rect().bottom());
        EXPECT_EQ(find("Double Click", radio) != nullptr, find("⌃ Ctrl", QAccessible::CheckBox) != nullptr);
        EXPECT_TRUE(!find("Double Click", radio) || state("Double Click", radio).disabled);
        return !find("Double Click", radio) && ++looks > 10;
    }));
    setMotion(false);

    click("Middle Click", button);
    click("Profile Switch", radio);
    click("3", button);
    finishAll();
    EXPECT_EQ(assigned.at(MouseButton::middle), ButtonAction::profileSwitch(3));
    EXPECT_THAT(messages, ElementsAre("Button remapped", "Button remapped", "Button remapped"));
    ASSERT_TRUE(find("Button remapped", QAccessible::AlertMessage));
    click("Button remapped", QAccessible::AlertMessage);
    EXPECT_FALSE(find("Button remapped", QAccessible::AlertMessage));
}

TEST_F(ProViewTest, AKeyIsLabelledInEveryLanguage)
{
    panel->selectTab(ContentModel::buttons);
    finish(manager->setButtonMapping(MouseButton::forward, ButtonAction::keyPress("up"), 1, false));
    preferences.chooseLanguage(1);
    EXPECT_EQ(find("Dalej", button)->text(QAccessible::Description), QStringLiteral("up"));
    EXPECT_EQ(find("Wstecz", button)->text(QAccessible::Description), QStringLiteral("Wstecz"));
    press("Dalej", button);
    press("Klawisz klawiatury", radio);
    ASSERT_TRUE(comes("strzałka w lewo", button));
    EXPECT_EQ(find("strzałka w lewo", button)->object()->property("shownLabel"), QStringLiteral("←"));
}

TEST_F(ViewTest, SymbolsHaveAccessibleDescriptions)
{
    show({"basilisk-v3-pro-wired"});
    panel->selectTab(ContentModel::rgb);
    EXPECT_EQ(find("Battery", QAccessible::Grouping)->text(QAccessible::Description),
              QStringLiteral("Charging"));
    EXPECT_TRUE(find("Pages", QAccessible::PageTabList) && find("Lighting zone", QAccessible::PageTabList));
    for (const char *name : {"About Kelmoth", "Quit"}) {
        const QRect target = find(name, button)->rect();
        EXPECT_TRUE(target.width() >= 24 && target.height() >= 24);
        QTest::mouseMove(view.get(), view->mapFromGlobal(target.topLeft() + QPoint(2, 2)));
        EXPECT_TRUE(comes(name, QAccessible::ToolTip));
    }
}

TEST_F(ProViewTest, TheKeyboardMovesTheFocusAndWrites)
{
    using Steps = std::vector<std::pair<Qt::Key, std::string>>; // each key, and what has the focus then
    const auto walk = [this](const Steps &steps) {
        for (const auto &[which, next] : steps) {
            key(which);
            EXPECT_EQ(focused(), next);
        }
    };
    walk({{Qt::Key_Tab, "DPI"}, {Qt::Key_Right, "RGB"}});
    EXPECT_EQ(panel->selectedTab(), ContentModel::rgb);
    walk({{Qt::Key_Left, "DPI"}, {Qt::Key_Tab, "RGB"}, {Qt::Key_Tab, "Buttons"}, {Qt::Key_Tab, "Settings"}});
    EXPECT_EQ(panel->selectedTab(), ContentModel::dpi);
    walk({{Qt::Key_Tab, "DPI"}, {Qt::Key_Tab, "Stage 1"}, {Qt::Key_Right, "Stage 2"}});
    time->hold();
    key(Qt::Key_Space);
    EXPECT_TRUE(state("Stage 2", radio).disabled);
    EXPECT_TRUE(state("Stage 2", radio).focused);
    key(Qt::Key_Space);
    time->release();
    finishAll();
    EXPECT_EQ(mouse().state().activeStage, 2);
    walk({{Qt::Key_Tab, "Stage 3"}, {Qt::Key_Tab, "Stage 4"}, {Qt::Key_Tab, "Stage 5"}});
    walk({{Qt::Key_Tab, "400"}, {Qt::Key_Down, "6.4K"}, {Qt::Key_Return, "6.4K"}});
    finishAll();
    EXPECT_EQ(mouse().state().dpiStages.at(1), 6400);
}

TEST_F(ProViewTest, EscapeClosesOnlyTheOpenSheetOrRow)
{
    const auto escape = [this] {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        event.ignore();
        QCoreApplication::sendEvent(view.get(), &event);
        return event.isAccepted();
    };
    EXPECT_FALSE(escape());
    panel->selectTab(ContentModel::buttons);
    click("Back", button);
    click("About Kelmoth", button);
    EXPECT_TRUE(comes("About Kelmoth", QAccessible::Dialog));
    EXPECT_EQ(focused(), "Close");
    EXPECT_TRUE(escape());
    EXPECT_FALSE(find("About Kelmoth", QAccessible::Dialog));
    EXPECT_TRUE(state("Back", button).expanded);
    EXPECT_EQ(focused(), "About Kelmoth"); // where it was before
    find("Double Click", radio)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_EQ(focused(), "Double Click");
    EXPECT_TRUE(escape());
    EXPECT_TRUE(state("Back", button).collapsed);
    EXPECT_TRUE(state("Back", button).focused);
    time->hold();
    for (const Qt::Key way : {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Space}) { // opens, goes in, picks
        key(way);
    }
    EXPECT_TRUE(state("Back", button).disabled);
    EXPECT_TRUE(state("Back", button).focused) << "during the write, too";
    time->release();
    finishAll();
    EXPECT_EQ(focused(), "Back");
    EXPECT_FALSE(escape());
}

TEST_F(ProViewTest, TheSheetHoldsTheFocusAndClosesByItsButton)
{
    click("About Kelmoth", button);
    EXPECT_TRUE(comes("About Kelmoth", QAccessible::Dialog));
    key(Qt::Key_Tab);
    EXPECT_EQ(focused(), "Close");
    EXPECT_TRUE(find("Version " KELMOTH_VERSION, caption));
    EXPECT_FALSE(find("Close", button)); // it comes in late
    ASSERT_TRUE(comes("Close", button));
    EXPECT_TRUE(find("Kelmoth", QAccessible::Heading));
    click("Close", button);
    EXPECT_FALSE(find("About Kelmoth", QAccessible::Dialog));
    setMotion(true);
    panel->openAbout();
    panel->closeAbout();
    panel->openAbout(); // while the last one still leaves
    EXPECT_TRUE(comes("Close", button));
}

TEST_F(ViewTest, AMouseThatCannotBeConfiguredIsExplained)
{
    show({"basilisk-v3-pro-wireless:bluetooth"});
    constexpr auto title = "Bluetooth connected: Razer Basilisk V3 Pro (Wireless)";
    EXPECT_TRUE(find(title, QAccessible::Heading));
    EXPECT_TRUE(state("Stage 2", radio).disabled);
    click("Stage 2", radio);
    EXPECT_THAT(messages, IsEmpty());
    click("Settings", QAccessible::PageTab);
    EXPECT_FALSE(find(title, QAccessible::Heading));
    EXPECT_TRUE(state("High", radio).disabled);
    EXPECT_FALSE(state("Auto", radio).disabled);
    EXPECT_TRUE(find("Not set", caption));
}

} // namespace kelmoth
