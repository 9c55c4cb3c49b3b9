import QtQuick
import Kelmoth.Components

/// For a colour: it begins and ends softly, or follows a spring. Immediate where the user wants no motion, and
/// where the whole panel changes its scheme.
Behavior {
    id: root

    property bool moves: true
    property int time: 180     ///< milliseconds, without a spring
    property real response: 0  ///< of a spring, seconds; 0: none
    property real damping: 0.8 ///< of the spring, fraction

    enabled: moves && !Theme.changing

    ColorAnimation {
        duration: Theme.reduceMotion ? 0 : root.response > 0 ? Spring.duration(root.response, root.damping) : root.time
        easing.bezierCurve: root.response > 0 ? Spring.curve(root.response, root.damping) : [0.42, 0, 0.58, 1, 1, 1]
        easing.type: Easing.BezierSpline
    }
}
