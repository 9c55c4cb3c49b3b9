#include "UI/Components/Spring.h"

#include <QEasingCurve>
#include <QPointF>
#include <gmock/gmock.h>

#include <cmath>

namespace kelmoth {

static QEasingCurve easing(const QVariantList &spline)
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    for (qsizetype i = 0; i + 5 < spline.size(); i += 6) {
        const auto point = [&](qsizetype n) {
            return QPointF(spline[i + n].toDouble(), spline[i + n + 1].toDouble());
        };
        curve.addCubicBezierSegment(point(0), point(2), point(4));
    }
    return curve;
}

/// Response and damping.
using Motion = std::pair<double, double>;

class SpringTest : public testing::TestWithParam<Motion> {};

TEST_P(SpringTest, AnimatesWithTheMotionOfAMassOnASpring)
{
    const auto [response, damping] = GetParam();
    const double total = Spring::duration(response, damping) / 1000.0;
    const QEasingCurve curve = easing(Spring::curve(response, damping));
    // The mass on the spring, followed in steps far finer than any frame.
    const double omega = 2 * M_PI / response;
    double time = 0, position = 0, velocity = 0;
    const auto positionAt = [&, ratio = damping](double seconds) {
        for (constexpr double step = 1e-6; time < seconds; time += step) {
            velocity += step * (omega * omega * (1 - position) - 2 * ratio * omega * velocity);
            position += step * velocity;
        }
        return position;
    };
    EXPECT_LE(Spring::curve(response, damping).size(), 60) << "more pieces than an easing curve has room for";
    constexpr int points = 60;
    for (int i = 1; i < points; ++i) {
        const double progress = i / double(points);
        EXPECT_NEAR(curve.valueForProgress(progress), positionAt(progress * total), 0.0015) << progress;
    }
    EXPECT_DOUBLE_EQ(curve.valueForProgress(1), 1);
    EXPECT_NEAR(positionAt(total), 1, 0.0011) << "stopped before it came to rest";
}

INSTANTIATE_TEST_SUITE_P(UsedInThePanel, SpringTest,
                         testing::Values(Motion{0.2, 0.7}, Motion{0.25, 0.8}, Motion{0.3, 0.7},
                                         Motion{0.4, 0.8}, Motion{0.6, 0.6}, Motion{0.3, 0.96},
                                         Motion{0.3, 1.0}));

TEST(Spring, ClampsInvalidParameters)
{
    EXPECT_EQ(Spring::curve(-1, 7), Spring::curve(0.01, 1));
    EXPECT_EQ(Spring::duration(1e9, -3), Spring::duration(10, 0.4));
}

} // namespace kelmoth
