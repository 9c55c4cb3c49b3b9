import QtQuick
import QtQuick.Layouts
import Kelmoth.Components

/// One of several values to choose from, in a ChoiceRow.
PressArea {
    id: root

    property string icon
    property bool moves: false ///< the choice comes and goes on a spring

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
        borderColor: Theme.outline
        borderWidth: 1
        color: Theme.controlBackground
        radius: 7
    }

    Surface {
        anchors.fill: parent
        color: Theme.accentFill
        color2: Theme.accentFillEnd
        opacity: root.selected ? 1 : 0
        radius: 7
        shadowColor: Theme.alpha(Theme.accent, 0.35)
        shadowRadius: 2.5
        shadowY: 1
        visible: opacity > 0

        Behavior on opacity {
            enabled: root.moves

            SpringNumber {
            }
        }
    }

    PressLook {
        radius: 7
        rests: root.selected
        target: root
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

            ColorFade on color {
                damping: 0.7
                moves: root.moves
                response: 0.3
            }
        }
    }
}
