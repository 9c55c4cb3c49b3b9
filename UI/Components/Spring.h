#pragma once

#include <QObject>
#include <QQmlEngine>
#include <QVariantList>

namespace kelmoth {

/// The motion of a mass on a spring that is let go at 0 and comes to rest at 1. `response`: the period in
/// seconds that it would have without friction; `damping`: the fraction of the friction at which it no longer
/// swings (1). Out of range, the nearest in 0.01 to 10 and 0.4 to 1 serve.
class Spring : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// Where the mass is after so many seconds.
    static double position(double response, double damping, double seconds);

    /// The time after which it stays within a thousandth of its rest, in milliseconds.
    Q_INVOKABLE static int duration(double response, double damping);

    /// The motion over that time as a Bezier spline, as `easing.bezierCurve` takes it; close to it from a
    /// damping of 0.5 on.
    Q_INVOKABLE static QVariantList curve(double response, double damping);
};

} // namespace kelmoth
