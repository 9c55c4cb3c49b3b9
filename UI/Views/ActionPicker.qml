pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Kelmoth.Components
import Kelmoth.Views

/// What a button can do, and under it the input for the value that an action needs; it stays while the picker
/// closes.
Column {
    id: root

    component Kept: Binding { // late, when all that changes at once has changed
        delayed: true
        restoreMode: Binding.RestoreNone
        target: root
        when: root?.open ?? false
    }

    required property int button ///< as in a row of the model
    required property ButtonsTabModel model
    required property bool open
    required property int selectedAction
    required property bool showsKeyInput
    required property bool showsProfilePicker
    property bool keyInput: false
    property bool profilePicker: false

    bottomPadding: 10
    leftPadding: 6
    rightPadding: 6
    spacing: 8

    Kept {
        property: "keyInput"
        value: root.showsKeyInput
    }

    Kept {
        property: "profilePicker"
        value: root.showsProfilePicker
    }

    TileGrid {
        columns: 2
        rowSpacing: 0
        width: root.width - 12

        Repeater {
            model: root.model.actions

            PressArea {
                id: action

                required property string icon
                required property int index
                required property string label

                Layout.fillWidth: true
                Layout.preferredWidth: 1
                checkable: true
                checked: selected
                focusRadius: 6
                implicitHeight: 28
                role: Accessible.RadioButton
                selected: index === root?.selectedAction // which can change while the picker goes
                text: qsTr(label)
                usable: root?.model.isEnabled ?? false

                onTriggered: root.model.handleActionSelection(root.button, index)

                Surface {
                    anchors.fill: parent
                    color: Theme.alpha(Theme.accent, 0.15)
                    radius: 6
                    visible: action.selected
                }

                PressLook {
                    radius: 6
                    rests: action.selected
                    target: action
                }

                Symbol {
                    id: symbol

                    anchors.verticalCenter: parent.verticalCenter
                    color: action.selected ? Theme.accent : Theme.secondaryLabel
                    name: action.icon
                    size: 11
                    width: 16
                    x: 6
                }

                AppText {
                    anchors.left: symbol.right
                    anchors.leftMargin: 10 // in line with the row's own text
                    anchors.right: check.left
                    anchors.verticalCenter: parent.verticalCenter
                    lineHeight: 0.95
                    maximumLineCount: 2
                    size: 11
                    text: action.text
                    wrapMode: Text.WordWrap
                }

                Symbol {
                    id: check

                    anchors.right: parent.right
                    anchors.rightMargin: 7
                    anchors.verticalCenter: parent.verticalCenter
                    color: Theme.accent
                    name: "checkmark"
                    size: 10
                    visible: action.selected
                    width: visible ? implicitWidth : 0
                }
            }
        }
    }

    Repeater {
        model: root.keyInput ? 1 : 0

        KeyInput {
            model: root.model
            width: root.width - 12
        }
    }

    Repeater {
        model: root.profilePicker ? 1 : 0

        ProfilePicker {
            model: root.model
            width: root.width - 12
        }
    }
}
