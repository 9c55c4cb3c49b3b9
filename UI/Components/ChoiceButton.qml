import QtQuick
import QtQuick.Layouts
import Kelmoth.Components

/// One of several values to choose from, in a ChoiceRow.
PressArea {
    id: root

    property string icon

    Layout.fillWidth: true
    Layout.preferredWidth: 1
    checkable: true
    checked: selected
    focusRadius: 7
    implicitHeight: 30
    implicitWidth: row.implicitWidth + 16
    role: Accessible.RadioButton

    Surface {
        anchors.fill: parent
        borderColor: root.selected ? "transparent" : Theme.outline
        borderWidth: 1
        color: root.selected ? Theme.accentFill : Theme.controlBackground
        color2: root.selected ? Theme.accentFillEnd : "transparent"
        radius: 7
        shadowColor: root.selected ? Theme.alpha(Theme.accent, 0.35) : "transparent"
        shadowRadius: 5
        shadowY: 1
    }

    Surface {
        anchors.fill: parent
        color: root.pressed ? Theme.press : Theme.hover
        radius: 7
        visible: root.hovered && !root.selected || root.pressed
    }

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 5

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            color: label.color
            name: root.icon
            size: 11
            visible: root.icon !== ""
        }

        AppText {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            color: root.selected ? Theme.white : Theme.label
            fontSizeMode: Text.HorizontalFit
            horizontalAlignment: Text.AlignHCenter
            minimumPixelSize: 9
            size: 11
            text: root.text
            weight: root.selected ? Font.DemiBold : Font.Medium
            width: Math.min(implicitWidth, root.width - 12 - (root.icon !== "" ? 18 : 0))
        }
    }
}
