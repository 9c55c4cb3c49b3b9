import QtQuick
import Kelmoth.Components

/// Says above a control what it is called, a moment after the pointer comes to rest on it or the focus is shown there.
Surface {
    id: root

    required property PressArea target
    readonly property bool wanted: target.hovered && !target.pressed || target.activeFocus && FocusGuide.visible
    property bool due: false

    Accessible.name: target.text
    Accessible.role: Accessible.ToolTip

    borderColor: Theme.outline
    borderWidth: 1
    color: Qt.tint(Theme.controlBackground, Theme.regularMaterial)
    height: label.implicitHeight + 8
    opacity: due ? 1 : 0
    radius: 6
    shadowColor: "#30000000"
    shadowRadius: 2.5
    shadowY: 2
    visible: opacity > 0
    width: Math.ceil(label.implicitWidth) + 14

    onWantedChanged: due = false

    Behavior on opacity {
        EaseOut {
            time: 120
        }
    }

    Timer {
        interval: 600
        running: root.wanted && !root.due

        onTriggered: root.due = true
    }

    AppText {
        id: label

        Accessible.ignored: true
        anchors.centerIn: parent
        size: 11
        text: root.target.text
    }
}
