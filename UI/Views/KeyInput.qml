pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Kelmoth.Components
import Kelmoth.Views

/// The keys of a keyboard, and the modifiers to go with the one that is picked.
Column {
    id: root

    required property ButtonsTabModel model
    readonly property var spokenKeys: ({
            down: qsTr("down arrow"),
            left: qsTr("left arrow"),
            right: qsTr("right arrow"),
            up: qsTr("up arrow")
        })

    leftPadding: 4
    rightPadding: 4
    spacing: 6

    AppText {
        color: Theme.secondaryLabel
        size: 10
        text: qsTr("Pick a key (optional modifiers first):")
        width: parent.width - 8
        wrapMode: Text.WordWrap
    }

    TileGrid {
        columns: 4
        width: parent.width - 8

        Repeater {
            model: root.model.modifiers

            PressArea {
                id: modifier

                required selected
                required property int index
                required property string label

                Layout.fillWidth: true
                Layout.preferredWidth: 1
                checkable: true
                checked: selected
                focusRadius: 4
                implicitHeight: 22
                role: Accessible.CheckBox
                text: qsTr(label)
                usable: root?.model.isEnabled ?? false

                onTriggered: root.model.toggleModifier(index)

                Surface {
                    anchors.fill: parent
                    color: modifier.selected ? Theme.accentPlain : Theme.underPageBackground
                    radius: 4
                }

                PressLook {
                    radius: 4
                    target: modifier
                }

                AppText {
                    anchors.centerIn: parent
                    color: modifier.selected ? Theme.white : Theme.secondaryLabel
                    size: 9
                    text: modifier.text
                    weight: Font.Medium
                }
            }
        }
    }

    Item {
        height: 96
        width: parent.width - 8

        Surface {
            anchors.fill: parent
            borderColor: Theme.outline
            borderWidth: 1
            color: Theme.windowBackground
            radius: 6
        }

        Flickable {
            id: area

            anchors.fill: parent
            anchors.margins: 1
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            contentHeight: keys.height + 8
            contentWidth: width

            TileGrid {
                id: keys

                columnSpacing: 3
                columns: 6
                rowSpacing: 3
                width: area.width - 12
                x: 4
                y: 4

                Repeater {
                    model: root.model.pickerKeys

                    KeyCap {
                        required property string modelData

                        label: qsTr(modelData)
                        spoken: root?.spokenKeys[modelData] ?? ""
                        usable: root?.model.isEnabled ?? false

                        onTriggered: root.model.commitPickedKey(modelData)
                    }
                }
            }

            Revealer {
                active: FocusGuide.visible
                flickable: area
            }
        }

        ScrollHint {
            flickable: area
            x: parent.width - 7
        }
    }
}
