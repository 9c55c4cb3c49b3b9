#include "App/PanelPopover.h"
#include "Tests/UI/PanelFixture.h"

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

} // namespace kelmoth
