#include "App/PopoverPlacement.h"

#include <gtest/gtest.h>

namespace kelmoth {
namespace {

constexpr QSize panel(340, 610);
constexpr QRect screen(0, 0, 1280, 1024);

TEST(PopoverPlacementTest, LiesBesideTheItemOnItsInnerSide)
{
    const struct {
        const char *name;
        PopoverSurroundings surroundings;
        QPoint position;
        int height = 610;
    } rows[]{
        {"below", {screen, {0, 0, 1280, 996}, QRect(800, 1000, 22, 22), {}}, {641, 384}},
        {"below, in the corner", {screen, {0, 0, 1280, 996}, QRect(1256, 1000, 22, 22), {}}, {940, 384}},
        {"a bar that is not told of", {screen, screen, QRect(1250, 998, 22, 22), {}}, {940, 382}},
        {"above", {screen, {0, 24, 1280, 1000}, QRect(600, 2, 22, 22), {}}, {441, 30}},
        {"left", {screen, {48, 0, 1232, 1024}, QRect(12, 500, 22, 22), {}}, {48, 206}},
        {"right", {screen, {0, 0, 1232, 1024}, QRect(1245, 1000, 22, 22), {}}, {892, 414}},
        {"a second screen",
         {{1280, 0, 1920, 1080}, {1280, 0, 1920, 1040}, QRect(3000, 1048, 22, 22), {}},
         {2841, 430}},
        {"a click below", {screen, {0, 0, 1280, 996}, {}, QPoint(1000, 1010)}, {830, 382}},
        {"nothing known", {screen, screen, {}, {}}, {934, 6}},
        {"nothing known, a bar below", {screen, {0, 0, 1280, 996}, {}, {}}, {934, 380}},
        {"nothing known, a bar at the left", {screen, {48, 0, 1232, 1024}, {}, {}}, {54, 408}},
        {"nothing known, a bar at the right", {screen, {0, 0, 1232, 1024}, {}, {}}, {886, 408}},
        {"nothing known, a dock and a bar above", {screen, {64, 27, 1216, 997}, {}, {}}, {934, 33}},
        {"a low screen, below",
         {{0, 0, 1093, 614}, {0, 0, 1093, 590}, QRect(1000, 591, 22, 22), {}},
         {753, 0},
         590},
        {"a low screen, above", {{0, 0, 1024, 600}, {0, 28, 1024, 572}, {}, QPoint(900, 10)}, {684, 28}, 572},
        {"a screen that is too small",
         {{0, 0, 320, 240}, {0, 0, 320, 240}, {}, QPoint(310, 230)},
         {0, 0},
         320},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(popoverArea(row.surroundings, panel), QRect(row.position, QSize(340, row.height)))
            << row.name;
    }
}

} // namespace
} // namespace kelmoth
