import QtQuick
import QtQuick.Layouts
import Kelmoth.Components

/// One of several values in a grid: filled with the accent colour, larger and glowing while it is the selected one.
PressArea {
    id: root

    property real radius: 6
    property real growth: 1.05 ///< scale while selected
    property real glow: 0      ///< radius of the shadow while selected

    Layout.fillWidth: true
    Layout.preferredWidth: 1
    checkable: true
    checked: selected
    focusRadius: radius
    role: Accessible.RadioButton
    scale: selected ? growth : 1

    Behavior on scale {
        SpringNumber {
            damping: 0.8
            response: 0.25
        }
    }

    Surface {
        anchors.fill: parent
        borderColor: Theme.outline
        borderWidth: 1
        color: Theme.controlBackground
        radius: root.radius
    }

    PressLook {
        radius: root.radius
        rests: root.selected
        target: root
    }

    Surface {
        anchors.fill: parent
        color: Theme.accentPlain
        opacity: root.selected ? 1 : 0
        radius: root.radius
        shadowColor: root.glow > 0 ? Theme.alpha(Theme.accent, 0.4) : "transparent"
        shadowRadius: root.glow
        visible: opacity > 0

        Behavior on opacity {
            SpringNumber {
                damping: 0.8
                response: 0.25
            }
        }
    }
}
