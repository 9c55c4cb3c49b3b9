#include "UI/Components/Spring.h"

#include <QtMath>

#include <algorithm>
#include <cmath>

namespace kelmoth {
namespace {

struct Motion {
    double omega;   ///< radians a second, without friction
    double damping; ///< 0.05 to 1

    Motion(double response, double fraction)
        : omega(2 * M_PI / std::clamp(response, 0.01, 10.0)), damping(std::clamp(fraction, 0.05, 1.0))
    {
    }

    /// Of the swinging part; 0 without a swing.
    double swing() const { return omega * std::sqrt(std::max(0.0, 1 - damping * damping)); }

    double position(double t) const
    {
        const double decay = std::exp(-damping * omega * t);
        const double w = swing();
        if (w * t < 1e-9) {
            return 1 - decay * (1 + damping * omega * t);
        }
        return 1 - decay * (std::cos(w * t) + damping * omega / w * std::sin(w * t));
    }

    double velocity(double t) const
    {
        const double decay = std::exp(-damping * omega * t);
        const double w = swing();
        return omega * omega * decay * (w * t < 1e-9 ? t : std::sin(w * t) / w);
    }

    /// When the envelope of the swing falls below a thousandth.
    double rest() const
    {
        constexpr double thousandth = 6.9077552789821; // -ln 0.001
        // Without a swing the mass creeps: (1 + wt) e^-wt takes longer than e^-wt.
        return (damping < 0.95 ? thousandth : 9.2334) / (damping * omega);
    }
};

} // namespace

double Spring::position(double response, double damping, double seconds)
{
    return Motion(response, damping).position(std::max(seconds, 0.0));
}

int Spring::duration(double response, double damping)
{
    return qCeil(Motion(response, damping).rest() * 1000);
}

QVariantList Spring::curve(double response, double damping)
{
    const Motion motion(response, damping);
    const double total = duration(response, damping) / 1000.0;
    // Between two points a cubic with the right position and velocity at both is the motion itself, as far as
    // an eye or a pixel can tell, where they lie closer while it is fast. There cannot be more: Qt's easing
    // curve has room for ten cubics and writes beyond it unasked.
    constexpr int pieces = 10;
    const auto knot = [&](int piece) { return total * std::pow(static_cast<double>(piece) / pieces, 1.4); };
    QVariantList points;
    points.reserve(pieces * 6);
    const auto add = [&](double t, double y) { points << t / total << y; };
    for (int i = 0; i < pieces; ++i) {
        const double from = knot(i);
        const double to = knot(i + 1);
        const double step = to - from;
        const bool last = i == pieces - 1;
        add(from + step / 3, motion.position(from) + motion.velocity(from) * step / 3);
        const double end = last ? 1.0 : motion.position(to);
        add(to - step / 3, end - (last ? 0.0 : motion.velocity(to)) * step / 3);
        add(last ? total : to, end);
    }
    return points;
}

} // namespace kelmoth
