import QtQuick
import Kelmoth.Components

/// One thing that the program does; comes in from the left.
Row {
    id: root

    property string icon
    property color color
    property string text
    property real delay: 0 ///< seconds
    property bool appeared: false
    property real arrival: appeared ? 1 : 0

    opacity: Math.min(1, arrival)
    spacing: 10

    Behavior on arrival {
        DelayedSpring {
            delay: root.delay * 1000
            response: 0.4
        }
    }

    transform: Translate {
        x: -20 * (1 - root.arrival)
    }

    Surface {
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.alpha(root.color, 0.15)
        height: 20
        shape: Surface.Circle
        width: 20

        Symbol {
            anchors.centerIn: parent
            color: Theme.readableSymbol(root.color)
            name: root.icon
            size: 12
        }
    }

    AppText {
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.alpha(Theme.label, 0.8)
        size: 11
        text: root.text
        width: Math.min(implicitWidth, root.width - 30)
    }
}
