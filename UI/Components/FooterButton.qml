import QtQuick
import Kelmoth.Components

/// A symbol that can be pressed.
PressArea {
    id: root

    property string icon
    property alias name: root.text

    focusRadius: 6
    implicitHeight: symbol.implicitHeight
    implicitWidth: symbol.implicitWidth

    Symbol {
        id: symbol

        anchors.centerIn: parent
        color: root.hovered ? Theme.accent : Theme.secondaryLabel
        name: root.icon
        scale: root.hovered ? 1.15 : 1
        size: 16

        Behavior on scale {
            SpringNumber {
                damping: 0.7
                response: 0.2
            }
        }

        ColorFade on color {
            damping: 0.7
            response: 0.2
        }
    }
}
