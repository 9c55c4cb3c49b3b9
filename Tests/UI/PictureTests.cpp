#include "UI/Components/Blur.h"
#include "UI/Components/SurfaceLook.h"

#include <gmock/gmock.h>

#include <cmath>

namespace kelmoth {

/// How much of a Gaussian edge is left `distance` outside of it.
static double beyondEdge(double distance, double sigma)
{
    return std::erfc(distance / (sigma * M_SQRT2)) / 2;
}

static SurfaceLook card()
{
    SurfaceLook look;
    look.size = {200, 120};
    look.radius = 12;
    look.fill = {{0.0, Qt::white}};
    return look;
}

/// Opacity of 0 to 1 at a logical position relative to the item.
static double alphaAt(const Picture &picture, double x, double y, double scale)
{
    const QPoint pixel = picture.origin + QPoint(int(std::floor(x * scale)), int(std::floor(y * scale)));
    return picture.image.valid(pixel) ? picture.image.pixelColor(pixel).alphaF() : 0;
}

TEST(SurfacePicture, FillsFromItsFirstColorToItsLast)
{
    SurfaceLook look = card();
    look.direction = SurfaceLook::LeadingToTrailing;
    look.fill = {{0.0, Qt::red}, {1.0, Qt::blue}};
    const Picture picture = paintSurface(look, 1);
    const auto leading = picture.image.pixelColor(picture.origin + QPoint(10, 60));
    const auto trailing = picture.image.pixelColor(picture.origin + QPoint(190, 60));
    EXPECT_GT(leading.red(), 5 * leading.blue());
    EXPECT_GT(trailing.blue(), 5 * trailing.red());
}

class SurfaceScaleTest : public testing::TestWithParam<double> {};

TEST_P(SurfaceScaleTest, ShadowFallsOffLikeAGaussianOutsideTheItem)
{
    const double scale = GetParam();
    SurfaceLook look = card();
    look.shadowColor = QColor(0, 0, 0, 128);
    look.shadowRadius = 6;
    look.shadowOffset = {0, 4};
    const Picture picture = paintSurface(look, scale);
    // Below the middle of the lower edge, which lies at 124.
    for (const double distance : {1.0, 4.0, 8.0, 14.0}) {
        EXPECT_NEAR(alphaAt(picture, 100, 124 + distance, scale),
                    0.5 * beyondEdge(distance + 0.5 / scale, look.shadowRadius), 0.02)
            << distance;
    }
    EXPECT_LT(alphaAt(picture, 100, -12, scale), 0.01) << "the shadow lies below";
    EXPECT_EQ(picture.image.pixelColor(picture.origin + QPoint(40, 40)), QColor(Qt::white));
    for (int x = 0; x < picture.image.width(); ++x) { // nothing is cut off
        EXPECT_LE(qAlpha(picture.image.pixel(x, picture.image.height() - 1)), 1);
    }
}

TEST_P(SurfaceScaleTest, EdgesEndOnWholePixels)
{
    SurfaceLook look = card();
    look.size = {101.3, 33.7};
    const Picture picture = paintSurface(look, GetParam());
    const int middle = picture.image.height() / 2;
    EXPECT_EQ(picture.image.size(), (look.size * GetParam()).toSize());
    EXPECT_GE(qAlpha(picture.image.pixel(0, middle)), 253);
    EXPECT_GE(qAlpha(picture.image.pixel(picture.image.width() - 1, middle)), 253);
    EXPECT_EQ(qAlpha(picture.image.pixel(0, 0)), 0) << "a corner that is not round";
}

INSTANTIATE_TEST_SUITE_P(Scales, SurfaceScaleTest, testing::Values(1.0, 1.25, 1.5, 2.0));

TEST(SurfacePicture, AShadowDoesNotShineThroughItsSurface)
{
    SurfaceLook look = card();
    look.fill = {{0.0, QColor(255, 255, 255, 51)}};
    look.shadowColor = Qt::black;
    look.shadowRadius = 10;
    const Picture picture = paintSurface(look, 1);
    EXPECT_EQ(picture.image.pixelColor(picture.origin + QPoint(100, 60)), QColor(255, 255, 255, 51));
    EXPECT_GT(alphaAt(picture, 100, 122, 1), 0.2);
}

TEST(SurfacePicture, CornersAreContinuousButNoLargerThanTheyMayBe)
{
    SurfaceLook look = card();
    look.radius = 20;
    const QImage smooth = paintSurface(look, 4).image;
    // On the diagonal an arc's corner is cut by (1 - sqrt 1/2) of the radius; the bend begins before the arc.
    const auto firstOpaque = [&](int dx, int dy) {
        QPoint pixel(0, 0);
        while (qAlpha(smooth.pixel(pixel)) < 128) {
            pixel += QPoint(dx, dy);
        }
        return (pixel.x() + pixel.y()) / 4.0;
    };
    EXPECT_NEAR(firstOpaque(1, 1), 2 * 20 * (1 - M_SQRT1_2), 1.5);
    EXPECT_GT(firstOpaque(1, 0), 20.5) << "a plain arc";
    EXPECT_LT(firstOpaque(1, 0), 32.5);

    look.size = {30, 30};
    look.radius = 500;
    const QImage round = paintSurface(look, 1).image;
    EXPECT_EQ(qAlpha(round.pixel(3, 3)), 0);
    EXPECT_EQ(qAlpha(round.pixel(15, 1)), 255);
}

TEST(SurfacePicture, PaintsAnySize)
{
    for (const QSizeF &size : {QSizeF(0.1, 0.1), QSizeF(1e6, 1), QSizeF(3, 4000)}) {
        SurfaceLook look = card();
        look.size = size;
        look.shadowColor = Qt::black;
        look.shadowRadius = 3;
        look.blurRadius = 8;
        look.borderColor = Qt::red;
        look.borderWidth = 9;
        EXPECT_EQ(paintSurface(look, 2).image.isNull(), size.width() > 5000) << size.width();
    }
}

TEST(Blur, IsAGaussianOfTheGivenWidth)
{
    for (const double sigma : {0.6, 1.5, 2.6, 8.0, 30.0}) {
        Plane plane{401, 3, std::vector<float>(std::size_t{401} * 3)};
        QImage image(401, 3, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        for (int y = 0; y < 3; ++y) {
            std::fill(plane.row(y) + 201, plane.row(y) + 401, 1.0F);
            std::fill_n(reinterpret_cast<QRgb *>(image.scanLine(y)) + 201, 200, qRgb(0, 0, 255));
        }
        blur(plane, sigma);
        const QImage soft = blurred(image, sigma);
        ASSERT_EQ(soft.size(), image.size());
        for (const double at : {-2.0, -1.0, -0.5, 0.0, 1.0, 2.0}) {
            const int x = int(std::lround(200.5 + at * sigma));
            const double left = 1 - beyondEdge(x - 200.5, sigma);
            EXPECT_NEAR(plane.row(1)[x], left, 0.025) << sigma << " at " << at;
            EXPECT_NEAR(soft.pixelColor(x, 1).alphaF(), left, 0.03) << sigma << " at " << at;
        }
        EXPECT_NEAR(plane.row(0)[0], 0, 0.001);
        EXPECT_NEAR(plane.row(2)[400], 1, 0.001);
    }
}

} // namespace kelmoth
