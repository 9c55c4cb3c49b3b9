#include "Tests/UI/Scene.h"

#include <QAccessible>

namespace kelmoth {

/// What assistive tools see of an item, which must be there.
static QAccessibleInterface *accessible(QQuickItem *item)
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
    EXPECT_TRUE(interface && interface->isValid());
    return interface;
}

/// The first of an item and its descendants that plays the role.
static QAccessibleInterface *withRole(QQuickItem *item, QAccessible::Role role)
{
    if (auto *interface = QAccessible::queryAccessibleInterface(item);
        interface && interface->role() == role) {
        return interface;
    }
    for (QQuickItem *child : item->childItems()) {
        if (auto *found = withRole(child, role)) {
            return found;
        }
    }
    return nullptr;
}

static void act(QAccessibleInterface *interface, const QString &action)
{
    ASSERT_TRUE(interface && interface->actionInterface());
    EXPECT_THAT(interface->actionInterface()->actionNames(), testing::Contains(action));
    interface->actionInterface()->doAction(action);
}

constexpr auto slider = R"(
Item {
    id: root
    property string log
    property real shown: 1000
    width: 300; height: 100
    ValueSlider {
        objectName: "slider"; width: 300
        from: 100; to: 1100; step: 100; value: root.shown; text: "DPI"
        onEditingStarted: root.log += "start "
        onMoved: value => { root.shown = value; if (!root.log.endsWith(value + " ")) root.log += value + " "; }
        onEditingEnded: root.log += "end "
    }
})";

TEST(Slider, ADragIsOneSteppedEdit)
{
    Scene scene(slider);
    QQuickItem *item = scene.item("slider");
    QTest::mousePress(&scene.window(), Qt::LeftButton, {}, scene.at(item, 0.5));
    EXPECT_TRUE(item->property("editing").toBool());
    EXPECT_EQ(scene.log(), "start 600");
    QTest::mouseMove(&scene.window(), scene.at(item, 0.68));
    EXPECT_EQ(scene.log(), "800");
    QTest::mouseMove(&scene.window(), scene.at(item, 1) + QPoint(50, 40));
    EXPECT_EQ(scene.log(), "1100");
    QTest::mouseRelease(&scene.window(), Qt::LeftButton, {}, scene.at(item, 1) + QPoint(50, 40));
    EXPECT_EQ(scene.log(), "end");
    EXPECT_FALSE(item->property("editing").toBool());
}

TEST(Slider, EachKeyAndEachToolStepIsOneEdit)
{
    Scene scene(slider);
    QQuickItem *item = scene.item("slider");
    scene.key(Qt::Key_Tab);
    const std::pair<Qt::Key, int> strokes[]{{Qt::Key_Left, 900},   {Qt::Key_Up, 1000},  {Qt::Key_Home, 100},
                                            {Qt::Key_PageUp, 600}, {Qt::Key_End, 1100}, {Qt::Key_Left, 1000}};
    for (const auto &[key, value] : strokes) {
        scene.key(key);
        EXPECT_EQ(scene.log(), "start " + std::to_string(value) + " end");
    }

    const auto send = [&](QEvent::Type type, bool isRepeat) {
        QKeyEvent event(type, Qt::Key_Left, Qt::NoModifier, QString(), isRepeat);
        QCoreApplication::sendEvent(&scene.window(), &event);
    };
    for (const bool isRepeat : {false, true, true}) {
        send(QEvent::KeyPress, isRepeat);
        send(QEvent::KeyRelease, true); // as X11 has it
    }
    EXPECT_EQ(scene.log(), "start 900 end start 800 700");
    send(QEvent::KeyRelease, false);
    EXPECT_EQ(scene.log(), "end");
    send(QEvent::KeyPress, true);
    scene.root()->forceActiveFocus();
    EXPECT_EQ(scene.log(), "start 600 end") << "the focus has left";
    item->forceActiveFocus();
    scene.root()->setProperty("shown", 1000);

    auto *tool = withRole(item, QAccessible::Slider);
    ASSERT_TRUE(tool && tool->valueInterface());
    EXPECT_EQ(tool->text(QAccessible::Name), QStringLiteral("DPI"));
    EXPECT_TRUE(tool->state().focused);
    auto *value = tool->valueInterface();
    EXPECT_EQ(value->currentValue().toDouble(), 1000);
    EXPECT_EQ(value->minimumValue().toDouble(), 100);
    EXPECT_EQ(value->maximumValue().toDouble(), 1100);
    act(tool, QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(scene.log(), "start 1100 end");
    act(tool, QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(scene.log(), "") << "past the end";
    value->setCurrentValue(449);
    EXPECT_EQ(scene.log(), "start 400 end");
    scene.root()->setProperty("shown", 700); // the owner's value still arrives
    EXPECT_EQ(value->currentValue().toDouble(), 700);

    item->setProperty("usable", false);
    act(tool, QAccessibleActionInterface::decreaseAction());
    value->setCurrentValue(300);
    scene.key(Qt::Key_Left);
    scene.click(item);
    EXPECT_EQ(scene.log(), "");
    EXPECT_EQ(value->currentValue().toDouble(), 700);
    EXPECT_TRUE(tool->state().disabled);
    EXPECT_TRUE(tool->state().focused) << "it may be for a moment";
    scene.root()->forceActiveFocus();
    scene.key(Qt::Key_Tab);
    EXPECT_FALSE(tool->state().focused) << "the focus does not come anew";
}

TEST(Strip, ItsKnobIsAtTheValueAndDraggable)
{
    Scene scene(R"(
Item {
    property string log
    property real shown: 1
    width: 300; height: 100
    Strip {
        objectName: "strip"; x: 20; width: 200; position: parent.shown
        onMoved: value => { parent.shown = value; parent.log += value.toFixed(2) + " "; }
        onEnded: parent.log += "end "
    }
})");
    auto *strip = scene.item("strip");
    auto *knob = strip->childItems().constLast();
    const auto middle = [&] { return knob->mapToItem(strip, QPointF(knob->width() / 2, 0)).x(); };
    EXPECT_EQ(middle(), 200);
    const QPoint hold = scene.at(strip, 1) + QPoint(6, 0); // beyond the strip's end
    QTest::mouseMove(&scene.window(), hold);
    EXPECT_TRUE(QTest::qWaitFor([&] { return knob->scale() == 1.12; }));
    QTest::mousePress(&scene.window(), Qt::LeftButton, {}, hold);
    EXPECT_EQ(scene.log(), "");
    QTest::mouseMove(&scene.window(), hold - QPoint(100, 0));
    QTest::mouseRelease(&scene.window(), Qt::LeftButton, {}, hold - QPoint(100, 0));
    EXPECT_EQ(scene.log(), "0.50 end");
    EXPECT_EQ(middle(), 100);
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, scene.at(strip, 0.25));
    EXPECT_EQ(scene.log(), "0.25 end");
    EXPECT_EQ(middle(), 50);
    QTest::mouseMove(&scene.window(), QPoint(5, 90));
    EXPECT_TRUE(QTest::qWaitFor([&] { return knob->scale() == 1; }));
}

constexpr auto choices = R"(
Item {
    id: root
    property string log
    property int mode: 1
    width: 300; height: 100
    ChoiceRow {
        width: 300
        ChoiceButton { objectName: "a"; text: "Auto"; icon: "globe"; selected: root.mode === 0; onTriggered: root.log += "a " }
        ChoiceButton { objectName: "b"; text: "Light"; selected: root.mode === 1; onTriggered: root.log += "b " }
        ChoiceButton { objectName: "c"; text: "Dark"; usable: false; onTriggered: root.log += "c " }
    }
    SwitchControl { objectName: "switch"; y: 50; width: 300; text: "Launch"; checked: root.mode === 1; onToggled: value => root.log += value + " " }
})";

TEST(Choices, ReportPressesByPointerKeysAndTools)
{
    Scene scene(choices);
    auto *a = scene.item("a");
    auto *b = scene.item("b");
    EXPECT_EQ(a->width(), b->width());
    scene.click(a);
    EXPECT_EQ(scene.log(), "a");
    scene.key(Qt::Key_Space);
    scene.key(Qt::Key_Return);
    scene.key(Qt::Key_Enter);
    EXPECT_EQ(scene.log(), "a a a");
    scene.key(Qt::Key_Right);
    EXPECT_TRUE(b->hasActiveFocus());
    scene.key(Qt::Key_Right);
    EXPECT_TRUE(b->hasActiveFocus()) << "what follows is disabled, and the switch is in no row with it";
    act(accessible(b), QAccessibleActionInterface::pressAction());
    EXPECT_EQ(scene.log(), "b");
    auto *c = scene.item("c");
    scene.click(c);
    act(accessible(c), QAccessibleActionInterface::pressAction());
    EXPECT_EQ(scene.log(), "");
    EXPECT_TRUE(accessible(c)->state().disabled);

    auto *launch = accessible(scene.item("switch"));
    act(launch, QAccessibleActionInterface::toggleAction());
    scene.click(scene.item("switch"));
    EXPECT_EQ(scene.log(), "false false");
    EXPECT_TRUE(launch->state().checked);
    EXPECT_TRUE(scene.window().geometry().contains(launch->rect()));
}

TEST(FocusRings, AreShownForKeyboardFocusOnly)
{
    Scene scene(choices);
    auto *a = scene.item("a");
    const auto ringAt = [&] {
        return scene.window().grabWindow().pixelColor(scene.at(a, 1, 0.5) + QPoint(2, 0));
    };
    const QColor bare = ringAt();
    scene.click(a);
    EXPECT_TRUE(a->hasActiveFocus());
    EXPECT_EQ(ringAt(), bare);
    scene.key(Qt::Key_Left);
    EXPECT_NE(ringAt(), bare);
}

TEST(VeiledPage, IsGreyAndInertAndFollowsThePage)
{
    Scene scene(R"(
Item {
    id: root
    property string log
    property color paint: "#ff0000"
    property bool veiled: false
    width: 300; height: 200
    VeiledPage {
        width: 300; height: 200; veiled: root.veiled
        PressArea {
            objectName: "button"; width: 200; height: 200; onTriggered: root.log += "pressed"
            Rectangle { objectName: "fill"; width: 200; height: 200; color: root.paint }
        }
    }
})");
    const auto pixel = [&](int x) { return scene.window().grabWindow().pixelColor(x, 100); };
    // Three tenths of the page's lightness over the white of the window.
    const auto isVeiled = [&](int gray) {
        const QColor color = pixel(100);
        return color.red() == color.green() && color.green() == color.blue() &&
               std::abs(color.red() - int(0.7 * 255 + 0.3 * gray)) < 4;
    };
    EXPECT_EQ(pixel(100), QColor(Qt::red));
    scene.root()->setProperty("veiled", true);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        EXPECT_TRUE(isVeiled(54) || pixel(100) == QColor(Qt::red)) << "as before, or veiled";
        return isVeiled(54);
    })) << pixel(100).name().toStdString();
    scene.root()->setProperty("paint", QColor(Qt::green));
    EXPECT_TRUE(QTest::qWaitFor([&] { return isVeiled(182); })) << pixel(100).name().toStdString();
    EXPECT_NE(pixel(203), pixel(250)) << "the edge is blurred";
    scene.click(scene.item("button"));
    EXPECT_EQ(scene.log(), "");
    scene.root()->setProperty("veiled", false);
    EXPECT_TRUE(QTest::qWaitFor([&] { return pixel(100) == QColor(Qt::green); }));
    scene.click(scene.item("button"));
    EXPECT_EQ(scene.log(), "pressed");
}

} // namespace kelmoth
