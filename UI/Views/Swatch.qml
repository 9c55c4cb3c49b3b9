import QtQuick
import QtQuick.Layouts
import Kelmoth.Components

/// A round spot of colour to pick; the selected one wears a ring.
PressArea {
    id: root

    property color color

    Layout.fillWidth: true
    Layout.preferredWidth: 1
    focusShape: Surface.Circle
    implicitHeight: 40
    role: Accessible.RadioButton
    selectable: true

    Surface {
        anchors.centerIn: parent
        borderColor: Theme.accent
        borderWidth: 2
        height: 40
        opacity: root.selected ? 1 : 0
        shape: Surface.Circle
        width: 40

        Behavior on opacity {
            EaseInOut {
                time: 180
            }
        }
    }

    Surface {
        anchors.centerIn: parent
        borderColor: Theme.outline
        borderWidth: 1
        color: root.color
        height: 34
        scale: root.selected ? 0.9 : root.hovered ? 1.1 : 1
        shape: Surface.Circle
        width: 34

        Behavior on scale {
            EaseInOut {
                time: 180
            }
        }
    }
}
