pragma ComponentBehavior: Bound

import QtQuick
import Kelmoth.Components
import Kelmoth.Views

/// The buttons page: what each button of the mouse does, and what else it could.
ScrollArea {
    id: root

    required property ButtonsTabModel model

    centered: false // what grows under a row leaves it where it is
    spacing: 8

    Row {
        spacing: 6

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.accent
            name: "info.circle.fill"
            size: 11
        }

        AppText {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.secondaryLabel
            size: 11
            text: qsTr("Tap button to change mapping")
        }
    }

    Item {
        height: rows.height
        width: parent.width

        Surface {
            anchors.fill: parent
            borderColor: Theme.outline
            borderWidth: 1
            color: Theme.controlBackground
            radius: 10
        }

        Column {
            id: rows

            width: parent.width

            Repeater {
                model: root.model.buttons

                ButtonRow {
                    first: index === 0
                    last: index === root.model.buttons.count - 1
                    model: root.model
                    width: rows.width

                    onOpened: item => root.reveal(item)
                }
            }
        }
    }
}
