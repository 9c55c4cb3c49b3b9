#include "CLI/MouseChanges.h"

#include <gmock/gmock.h>

namespace kelmoth {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(MouseChangesTest, OrderWhatHappenedBetweenTwoLists)
{
    using Kind = MouseChange::Kind;
    RazerDevice gone;
    RazerDevice stays;
    RazerDevice charging;
    charging.batteryLevel = 50;
    RazerDevice comes;
    comes.batteryLevel = 7; // read before anyone looked
    auto charged = charging;
    charged.isCharging = true;

    std::vector<std::pair<Kind, QUuid>> seen;
    for (const auto &change : changesBetween({gone, stays, charging}, {charged, stays, comes})) {
        seen.emplace_back(change.kind, change.device.id);
    }
    EXPECT_THAT(seen, ElementsAre(std::pair(Kind::detached, gone.id), std::pair(Kind::battery, charging.id),
                                  std::pair(Kind::attached, comes.id), std::pair(Kind::battery, comes.id)));
    EXPECT_THAT(changesBetween({charged, stays}, {stays, charged}), IsEmpty());
}

} // namespace
} // namespace kelmoth
