import QtQuick
import Kelmoth.Components

/// A bar of colours with a marker on it. Its whole width is the range: at its ends the marker stands over them.
ValueHandle {
    id: root

    property alias position: root.value ///< 0 to 1; the owner's
    property alias stops: bar.stops     ///< of the gradient: objects with position and color
    property color markerColor: "transparent"
    property bool moves: false ///< the marker goes to its place, and is not there at once
    readonly property real shownPosition: Math.max(0, Math.min((marker.x + marker.width / 2) / Math.max(1, width), 1))

    signal ended

    Accessible.role: role

    implicitHeight: 18
    implicitWidth: 200
    knobWidth: 18
    opacity: dimmed ? 0.45 : 1

    onEditingEnded: ended()

    Behavior on opacity {
        EaseOut {
            time: 150
        }
    }

    Surface {
        id: bar

        anchors.verticalCenter: parent.verticalCenter
        borderColor: Theme.outline
        borderWidth: 1
        gradientDirection: Surface.LeadingToTrailing
        height: 12
        shape: Surface.Capsule
        width: parent.width
    }

    Knob {
        id: marker

        borderColor: "white"
        borderWidth: 3
        color: root.markerColor
        handle: root
        shadowColor: "#60000000"

        Behavior on x {
            enabled: root.moves

            EaseInOut {
                time: 180
            }
        }
    }
}
