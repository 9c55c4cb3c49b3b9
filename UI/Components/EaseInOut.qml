import QtQuick
import Kelmoth.Components

/// Begins and ends softly; immediate where the user wants no motion, unless `always`.
NumberAnimation {
    property int time: 200 ///< milliseconds; set this, not `duration`
    property bool always: false

    duration: Theme.reduceMotion && !always ? 0 : time
    easing.bezierCurve: [0.42, 0, 0.58, 1, 1, 1]
    easing.type: Easing.BezierSpline
}
