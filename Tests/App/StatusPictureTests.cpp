#include "App/StatusPicture.h"
#include "UI/Components/Contrast.h"

#include <QPainter>
#include <gtest/gtest.h>

namespace kelmoth {

/// Whether both edges of the picture can be told from the bar in every row of its middle half.
static bool standsOut(const QIcon &icon, const QColor &bar, int side)
{
    QImage seen(side, side, QImage::Format_RGB32);
    seen.fill(bar);
    QPainter painter(&seen);
    icon.paint(&painter, seen.rect());
    painter.end();
    const auto differs = [&](int y, int from, int to) {
        while (from < to && contrastRatio(seen.pixelColor(from, y), bar) < 3) {
            ++from;
        }
        return from < to;
    };
    int rows = 0;
    for (int y = side / 4; y < side * 3 / 4; ++y) {
        rows += differs(y, 0, side * 2 / 5) && differs(y, side * 3 / 5, side) ? 1 : 0;
    }
    return rows == side * 3 / 4 - side / 4;
}

TEST(StatusPictureTest, HasContrastOnLightDarkAndUnknownBars)
{
    const struct {
        ColorScheme told;
        QColor bar;
    } rows[]{{ColorScheme::light, Qt::white},
             {ColorScheme::dark, Qt::black},
             {ColorScheme::noPreference, Qt::white},
             {ColorScheme::noPreference, Qt::black},
             {ColorScheme::noPreference, QColor(128, 128, 128)}};
    for (const auto &[told, bar] : rows) {
        for (const int side : {16, 22, 24, 32, 48}) {
            EXPECT_TRUE(standsOut(statusPicture(told, 1), bar, side))
                << int(told) << " on " << bar.name().toStdString() << " at " << side;
        }
    }
}

} // namespace kelmoth
