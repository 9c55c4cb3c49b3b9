import QtQuick
import QtQuick.Layouts
import Kelmoth.Components

/// A supported mouse with its highest DPI; comes in from the right.
RowLayout {
    id: root

    property string name
    property string badge ///< its highest DPI, as it is shown
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
        x: 20 * (1 - root.arrival)
    }

    Symbol {
        Layout.preferredWidth: 20
        color: Theme.readableSymbol(Theme.green)
        name: "computermouse.fill"
        size: 10
    }

    AppText {
        Layout.fillWidth: true
        color: Theme.alpha(Theme.label, 0.8)
        size: 10
        text: root.name
    }

    Item {
        implicitHeight: badgeText.implicitHeight + 4
        implicitWidth: badgeText.implicitWidth + 12

        Surface {
            anchors.fill: parent
            color: Theme.alpha(Theme.green, 0.15)
            shape: Surface.Capsule
        }

        AppText {
            id: badgeText

            anchors.centerIn: parent
            color: Theme.secondaryLabel
            size: 9
            text: root.badge
            weight: Font.Medium
        }
    }
}
