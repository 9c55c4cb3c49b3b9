import QtQuick
import Kelmoth.Components

/// A label and a switch at the far end. The owner binds `checked` and takes what `toggled` tells.
PressArea {
    id: root

    property int size: 12

    signal toggled(value: bool)

    checkable: true
    focusItem: track
    focusShape: Surface.Capsule
    implicitHeight: 24
    implicitWidth: label.implicitWidth + 12 + track.width
    role: Accessible.CheckBox

    onTriggered: toggled(!checked)

    AppText {
        id: label

        anchors.left: parent.left
        anchors.right: track.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        size: root.size
        text: root.text
    }

    Surface {
        id: track

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        borderColor: Theme.outline
        borderWidth: root.checked ? 0 : 1
        color: root.checked ? Theme.accentPlain : Theme.underPageBackground
        height: 20
        shape: Surface.Capsule
        width: 34

        PressLook {
            shape: Surface.Capsule
            target: root
        }

        Surface {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.knob
            height: 16
            shadowColor: "#48000000"
            shadowRadius: 1.5
            shadowY: 1
            shape: Surface.Circle
            width: 16
            x: root.checked ? 16 : 2

            Behavior on x {
                SpringNumber {
                    damping: 0.8
                    response: 0.25
                }
            }
        }
    }
}
