import QtQuick
import Kelmoth.Components

/// What can be pressed by pointer, by Space or Enter, and by assistive tools; its looks are its children.
Item {
    id: root

    property string text ///< what it is called
    property int role: Accessible.Button
    property bool selectable: false
    property bool selected: false
    property bool checkable: false
    property bool checked: false
    property real focusRadius: 8
    property int focusShape: Surface.Rectangle
    readonly property bool hovered: area.containsMouse && enabled
    readonly property bool pressed: area.pressed && area.containsMouse
    default property alias content: holder.data

    signal triggered

    Accessible.checkable: checkable
    Accessible.checked: checked
    Accessible.focusable: true
    Accessible.name: text
    Accessible.role: role
    Accessible.selectable: selectable
    Accessible.selected: selected
    Accessible.onPressAction: if (enabled) triggered()
    Accessible.onToggleAction: if (enabled) triggered()
    Keys.onEnterPressed: event => event.isAutoRepeat || triggered()
    Keys.onReturnPressed: event => event.isAutoRepeat || triggered()
    Keys.onSpacePressed: event => event.isAutoRepeat || triggered()

    activeFocusOnTab: true
    implicitHeight: holder.children.length === 1 ? holder.children[0].implicitHeight : 0
    implicitWidth: holder.children.length === 1 ? holder.children[0].implicitWidth : 0

    Item {
        id: holder

        anchors.fill: parent
    }

    MouseArea {
        id: area

        anchors.fill: parent
        hoverEnabled: true

        onClicked: root.triggered()
        onPressed: root.forceActiveFocus(Qt.MouseFocusReason)
    }

    FocusRing {
        radius: root.focusRadius + 3
        shape: root.focusShape
        target: root
    }
}
