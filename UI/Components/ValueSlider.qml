import QtQuick
import Kelmoth.Components

/// A value on a line. The owner binds `value` and takes what `moved` tells; a drag is one edit, and so is each
/// key, all repeats of one that is held, and each step by assistive tools.
ValueHandle {
    id: root

    property alias from: root.minimumValue
    property alias to: root.maximumValue

    Accessible.role: role

    implicitHeight: 20
    implicitWidth: 200
    inset: knobWidth / 2
    knobWidth: 16
    opacity: dimmed ? 0.45 : 1
    stepSize: step > 0 ? step : (to - from) / 20

    Behavior on opacity {
        EaseOut {
            time: 150
        }
    }

    Surface {
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.underPageBackground
        height: 4
        shape: Surface.Capsule
        width: parent.width
    }

    Surface {
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.accentPlain
        height: 4
        shape: Surface.Capsule
        width: knob.x + knob.width / 2
    }

    Knob {
        id: knob

        borderColor: Theme.outline
        borderWidth: 0.5
        color: Theme.knob
        handle: root
    }
}
