import QtQuick
import Kelmoth.Components

/// A symbol that can be pressed; a larger area around it, too.
Item {
    id: root

    property string icon
    property alias name: area.text
    property alias area: area

    signal triggered

    implicitHeight: symbol.implicitHeight
    implicitWidth: symbol.implicitWidth

    PressArea {
        id: area

        anchors.centerIn: parent
        focusRadius: 6
        height: Math.max(24, root.height)
        width: Math.max(24, root.width)

        onTriggered: root.triggered()

        Symbol {
            id: symbol

            anchors.centerIn: parent
            color: area.hovered ? Theme.accent : Theme.secondaryLabel
            name: root.icon
            scale: area.hovered ? 1.15 : 1
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
}
