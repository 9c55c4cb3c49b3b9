import QtQuick
import Kelmoth.Components

/// A bar of colours with a marker on it; its whole width is the range.
ValueHandle {
    id: root

    property alias position: root.value ///< 0 to 1; the owner's
    property alias stops: bar.stops     ///< of the gradient: objects with position and color
    property color markerColor: "transparent"
    property bool moves: false ///< the marker goes to its place, and is not there at once
    readonly property real shownPosition: marker.x / Math.max(1, width - marker.width)

    signal ended

    Accessible.role: role

    implicitHeight: 18
    implicitWidth: 200
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

    Surface {
        id: marker

        anchors.verticalCenter: parent.verticalCenter
        borderColor: "white"
        borderWidth: 3
        color: root.markerColor
        height: 18
        shadowColor: "#60000000"
        shadowRadius: 3
        shadowY: 1
        shape: Surface.Circle
        width: 18
        x: Math.round(root.fraction * (root.width - width))

        Behavior on x {
            enabled: root.moves

            EaseInOut {
                time: 180
            }
        }

        FocusRing {
            shape: Surface.Circle
            target: root
        }
    }
}
