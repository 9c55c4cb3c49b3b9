import QtQuick
import Kelmoth.Components

/// What can be pressed by pointer, by Space or Enter, and by assistive tools; its looks are its children.
Operable {
    id: root

    property real focusRadius: 8
    property int focusShape: Surface.Rectangle
    property Item focusItem: root ///< what the focus ring lies around
    readonly property bool hovered: area.containsMouse && enabled && !dimmed
    readonly property bool pressed: area.pressed && area.containsMouse
    default property alias content: holder.data

    signal triggered

    function press(): void {
        if (usable) {
            triggered();
        }
    }

    Accessible.role: role
    Keys.onEnterPressed: event => event.isAutoRepeat || press()
    Keys.onReturnPressed: event => event.isAutoRepeat || press()
    Keys.onSpacePressed: event => event.isAutoRepeat || press()

    activeFocusOnTab: true
    implicitHeight: holder.children.length === 1 ? holder.children[0].implicitHeight : 0
    implicitWidth: holder.children.length === 1 ? holder.children[0].implicitWidth : 0

    onPressWished: press()

    Item {
        anchors.fill: parent
        opacity: root.dimmed ? 0.45 : 1

        Behavior on opacity {
            EaseOut {
                time: 150
            }
        }

        Item {
            id: holder

            anchors.fill: parent
            opacity: root.pressed ? 0.75 : 1
        }
    }

    MouseArea {
        id: area

        anchors.fill: parent
        hoverEnabled: true

        onClicked: root.press()
        onPressed: mouse => {
            mouse.accepted = root.usable;
            root.forceActiveFocus(Qt.MouseFocusReason);
        }
    }

    FocusRing {
        parent: root.focusItem
        radius: root.focusRadius + 3
        shape: root.focusShape
        target: root
    }
}
