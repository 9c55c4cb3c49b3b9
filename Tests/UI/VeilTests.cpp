#include "Tests/UI/Scene.h"

namespace kelmoth {
namespace {

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
    const auto pixel = [&](QPoint at) { return scene.window().grabWindow().pixelColor(at); };
    const auto isGrey = [&](int value) {
        const QColor color = pixel({100, 100});
        return color.red() == color.green() && color.green() == color.blue() &&
               std::abs(color.red() - value) < 4;
    };
    // Three tenths of the page's lightness over the white of the window.
    const auto veiled = [](int gray) { return int(0.7 * 255 + 0.3 * gray); };
    EXPECT_EQ(pixel({100, 100}), QColor(Qt::red));
    scene.root()->setProperty("veiled", true);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        EXPECT_TRUE(isGrey(veiled(54)) || pixel({100, 100}) == QColor(Qt::red)) << "as before, or veiled";
        return isGrey(veiled(54));
    })) << pixel({100, 100}).name().toStdString();
    scene.root()->setProperty("paint", QColor(Qt::green));
    EXPECT_TRUE(QTest::qWaitFor([&] { return isGrey(veiled(182)); }))
        << pixel({100, 100}).name().toStdString();
    EXPECT_NE(pixel({203, 100}), pixel({250, 100})) << "the edge is blurred";
    scene.click(scene.item("button"));
    EXPECT_EQ(scene.log(), "");
    scene.root()->setProperty("veiled", false);
    EXPECT_TRUE(QTest::qWaitFor([&] { return pixel({100, 100}) == QColor(Qt::green); }));
    scene.click(scene.item("button"));
    EXPECT_EQ(scene.log(), "pressed");
}

} // namespace
} // namespace kelmoth
