import QtQuick
import Kelmoth.Components

/// The motion of a spring; immediate where the user wants no motion, unless `always`.
NumberAnimation {
    property real response: 0.3 ///< seconds
    property real damping: 0.7  ///< fraction
    property bool always: false

    duration: Theme.reduceMotion && !always ? 0 : Spring.duration(response, damping)
    easing.bezierCurve: Spring.curve(response, damping)
    easing.type: Easing.BezierSpline
}
