#include "App/PanelPopover.h"
#include "Tests/UI/PanelFixture.h"

#include <QGuiApplication>
#include <QQuickItem>

#include <algorithm>

namespace kelmoth {

class FakeScreen : public PopoverScreen {
public:
    explicit FakeScreen(bool canPlaceWindows) : PopoverScreen(nullptr), m_canPlaceWindows(canPlaceWindows) {}
    bool canPlaceWindows() const override { return m_canPlaceWindows; }

private:
    const bool m_canPlaceWindows;
};

using PanelPopoverTest = PanelTest;

TEST_F(PanelPopoverTest, OnlyThePanelOfADesktopWithoutAnItemStaysOpen)
{
    PanelTranslator translator(preferences);
    open({"basilisk-v3"});
    for (const bool canPlaceWindows : {true, false}) {
        PanelPopover popover(*panel, translator, std::make_shared<FakeScreen>(canPlaceWindows));
        for (const auto place :
             {Popover::Place::asWindow, Popover::Place::atItem, Popover::Place::atPointer}) {
            popover.show(place, std::nullopt);
            EXPECT_TRUE(popover.isShown());
            EXPECT_EQ(popover.isWindow(), place == Popover::Place::asWindow);
            popover.performClose();
        }
    }
}

/// With all that is in it, while it is open; not further than its header and footer have room.
TEST_F(PanelPopoverTest, GrowsWithTheTextsOfTheDesktop)
{
    PanelTranslator translator(preferences);
    open({"basilisk-v3"});
    PanelPopover popover(*panel, translator, std::make_shared<FakeScreen>(false));
    popover.show(Popover::Place::asWindow, std::nullopt);
    auto *window = qobject_cast<PanelWindow *>(QGuiApplication::topLevelWindows().constFirst());
    ASSERT_TRUE(window);
    const auto available = window->screen()->availableSize() - QSize(0, 32);
    for (const double scale : {1.25, 1.5, 3.0, 0.5, 1.0}) {
        desktop->scaleOfTexts = scale;
        desktop->handler();
        const double most = std::min(available.width() / 340.0, available.height() / 320.0);
        const double expected = std::min(scale, most);
        EXPECT_EQ(window->width(), qRound(340 * expected)) << scale;
        EXPECT_EQ(window->height(), std::max(320, std::min(qRound(610 * expected), available.height())));
        const auto items = window->rootObject()->findChildren<QQuickItem *>();
        const auto footer = std::ranges::find_if(items, [](const QQuickItem *item) {
            return item->property("text").toString().startsWith(QStringLiteral("Kelmoth v"));
        });
        ASSERT_NE(footer, items.end());
        const auto place = (*footer)->mapRectToScene((*footer)->boundingRect());
        EXPECT_NEAR(place.left(), 16 * expected, 1) << scale;
        EXPECT_NEAR(place.height(), (*footer)->height() * expected, 0.1) << scale;
        EXPECT_LT(place.bottom(), window->height());
    }
}

} // namespace kelmoth
