#include "Tests/UI/Scene.h"

#include <QAccessible>

namespace kelmoth {
namespace {

/// What assistive tools see of an item, which must be there.
QAccessibleInterface *accessible(QQuickItem *item)
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
    EXPECT_TRUE(interface && interface->isValid());
    return interface;
}

/// The first of an item and its descendants that plays the role.
QAccessibleInterface *withRole(QQuickItem *item, QAccessible::Role role)
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

/// The names of the leaves of the tree below an interface, which hangs together both ways.
std::vector<std::string> leaves(QAccessibleInterface *interface)
{
    if (interface->childCount() == 0) {
        return {interface->text(QAccessible::Name).toStdString()};
    }
    std::vector<std::string> names;
    for (int i = 0; i < interface->childCount(); ++i) {
        QAccessibleInterface *child = interface->child(i);
        EXPECT_EQ(interface->indexOfChild(child), i);
        EXPECT_EQ(child->parent(), interface);
        const auto below = leaves(child);
        names.insert(names.end(), below.begin(), below.end());
    }
    return names;
}

void act(QAccessibleInterface *interface, const QString &action)
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

TEST(Slider, ADragIsOneEditInSteps)
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

TEST(Slider, EachKeyAndEachStepOfAToolIsAnEditOfItsOwn)
{
    Scene scene(slider);
    QQuickItem *item = scene.item("slider");
    scene.key(Qt::Key_Tab);
    scene.key(Qt::Key_Left);
    EXPECT_EQ(scene.log(), "start 900 end");
    scene.key(Qt::Key_Up);
    EXPECT_EQ(scene.log(), "start 1000 end");
    scene.key(Qt::Key_Home);
    scene.key(Qt::Key_PageUp);
    scene.key(Qt::Key_End);
    scene.key(Qt::Key_Left);
    EXPECT_EQ(scene.log(), "start 100 end start 600 end start 1100 end start 1000 end");

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

TEST(Choices, ArePressedByPointerKeysAndTools)
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
    scene.click(scene.item("c"));
    act(accessible(scene.item("c")), QAccessibleActionInterface::pressAction());
    EXPECT_EQ(scene.log(), "");
}

TEST(Choices, TellToolsWhatTheyAre)
{
    Scene scene(choices);
    auto *light = accessible(scene.item("b"));
    EXPECT_EQ(light->role(), QAccessible::RadioButton);
    EXPECT_EQ(light->text(QAccessible::Name), QStringLiteral("Light"));
    EXPECT_TRUE(light->state().checked);
    EXPECT_FALSE(accessible(scene.item("a"))->state().checked);
    EXPECT_TRUE(accessible(scene.item("c"))->state().disabled);
    auto *launch = accessible(scene.item("switch"));
    EXPECT_EQ(launch->role(), QAccessible::CheckBox);
    EXPECT_THAT(leaves(QAccessible::queryAccessibleInterface(&scene.window())),
                testing::ElementsAre("Auto", "Light", "Dark", "Launch"));
    EXPECT_TRUE(scene.window().geometry().contains(launch->rect()));
    EXPECT_TRUE(launch->state().checkable && launch->state().checked && launch->state().focusable);
    act(launch, QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(scene.log(), "false");
    scene.click(scene.item("switch"));
    EXPECT_EQ(scene.log(), "false");
    EXPECT_TRUE(launch->state().checked) << "only the owner changes it";
}

TEST(Segments, ArePickedByIndex)
{
    Scene scene(R"(
Item {
    id: root
    property string log
    width: 300; height: 100
    SegmentedPicker { objectName: "picker"; width: 300; model: ["Wheel", "Logo", "Underglow"]; onPicked: index => root.log += index + " " }
    FooterButton { objectName: "about"; y: 50; icon: "info.circle"; name: "About"; onTriggered: root.log += "about " }
    ToastView { objectName: "toast"; y: 70; type: 0; message: "No device connected"; onTapped: root.log += "toast " }
})");
    QQuickItem *picker = scene.item("picker");
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, scene.at(picker, 0.5));
    scene.key(Qt::Key_Right);
    scene.key(Qt::Key_Space);
    EXPECT_EQ(scene.log(), "1 2");
    auto *first = withRole(picker, QAccessible::PageTab);
    EXPECT_EQ(first->text(QAccessible::Name), QStringLiteral("Wheel"));
    EXPECT_TRUE(first->state().selected);
    scene.click(scene.item("about"));
    scene.click(scene.item("toast"));
    EXPECT_EQ(scene.log(), "about toast");
    EXPECT_EQ(accessible(scene.item("about"))->text(QAccessible::Name), QStringLiteral("About"));
}

TEST(FocusRings, AreShownToThoseWhoUseKeys)
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

} // namespace
} // namespace kelmoth
