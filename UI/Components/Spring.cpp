#include "UI/Components/Spring.h"

#include <QtMath>

#include <algorithm>
#include <cmath>

namespace kelmoth {
namespace {

struct Motion {
    double omega;   ///< radians a second, without friction
    double damping; ///< 0.4 to 1

    Motion(double response, double fraction)
        : omega(2 * M_PI / std::clamp(response, 0.01, 10.0)), damping(std::clamp(fraction, 0.4, 1.0))
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

    /// When it stays within a thousandth of its rest: the envelope of the swing, e^-dwt / sqrt(1 - d^2),
    /// falls below that; without a swing the mass creeps as (1 + wt) e^-wt.
    double rest() const
    {
        constexpr double thousandth = 6.9078; // -ln 0.001
        constexpr double creeping = 9.2335;   // where (1 + x) e^-x is 0.001
        const double swinging = thousandth - std::log(std::max(1 - damping * damping, 1e-9)) / 2;
        return std::min(swinging, creeping) / (damping * omega);
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
    // an eye or a pixel can tell. The toolkit's easing curve has room for ten pieces and writes beyond it for
    // more (seen in 6.4), so they are long where the motion has nearly died away.
    constexpr int pieces = 10;
    const double fading = motion.damping * motion.omega / 4;
    const auto boundary = [&](int i) {
        return i == pieces ? total : -std::log1p(i / double(pieces) * std::expm1(-fading * total)) / fading;
    };
    QVariantList points;
    points.reserve(qsizetype{6} * pieces);
    const auto add = [&](double t, double y) { points << t / total << y; };
    for (int i = 0; i < pieces; ++i) {
        const double from = boundary(i);
        const double to = boundary(i + 1);
        const bool last = i + 1 == pieces;
        const double third = (to - from) / 3;
        const double end = last ? 1.0 : motion.position(to);
        add(from + third, motion.position(from) + motion.velocity(from) * third);
        add(to - third, end - (last ? 0.0 : motion.velocity(to) * third));
        add(to, end);
    }
    return points;
}

} // namespace kelmoth
