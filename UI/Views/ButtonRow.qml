pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Kelmoth.Components
import Kelmoth.Views

/// A button of the mouse with its action; expanded, with the actions to pick from.
Item {
    id: root

    required property ButtonsTabModel model
    required property string actionName
    required property int button
    required property bool expanded
    required property string icon
    required property int index
    required property string label
    required property int selectedAction
    required property bool showsKeyInput
    required property bool showsProfilePicker
    property bool first: false
    property bool last: false

    signal opened(item: Item) ///< grows, and wants to be seen

    height: header.height + drawer.height

    onExpandedChanged: {
        if (drawer.activeFocus) {
            header.takeFocus();
        }
        drawer.enabled = expanded; // what is closing is not picked from any more
    }
    onHeightChanged: if (expanded) opened(root)

    Surface {
        anchors.fill: header
        anchors.margins: 1
        color: Theme.alpha(Theme.accent, 0.1)
        opacity: root.expanded ? 1 : 0
        radius: root.first || root.last ? 9 : 0
        visible: opacity > 0

        Behavior on opacity {
            enabled: header.visible

            SpringNumber {
                damping: 0.7
                response: 0.3
            }
        }
    }

    PressArea {
        id: header

        description: root.actionName
        expandable: true
        expanded: root.expanded
        focusRadius: 8
        implicitHeight: line.implicitHeight + 20
        text: qsTr(root.label)
        usable: root.model.isEnabled
        width: parent.width

        onTriggered: root.model.toggleButton(root.button)

        PressLook {
            anchors.margins: 1
            radius: root.first || root.last ? 9 : 0
            target: header
        }

        RowLayout {
            id: line

            anchors.fill: parent
            anchors.margins: 10
            spacing: 8

            Symbol {
                Layout.preferredWidth: 20
                color: root.expanded ? Theme.accent : Theme.secondaryLabel
                name: root.icon
                size: 12
            }

            AppText {
                Layout.fillWidth: true
                Layout.minimumWidth: Math.min(implicitWidth, 150)
                size: 12
                text: header.text
                weight: Font.Medium
            }

            Item { // a long name takes a second line from the row's insets
                Layout.fillWidth: true
                Layout.maximumWidth: implicitWidth
                implicitWidth: Math.ceil(action.implicitWidth)

                AppText {
                    id: action

                    anchors.verticalCenter: parent.verticalCenter
                    color: Theme.secondaryLabel
                    horizontalAlignment: Text.AlignRight
                    lineHeight: 0.95
                    maximumLineCount: 2
                    size: 11
                    text: root.actionName
                    width: parent.width
                    wrapMode: Text.Wrap
                }
            }

            Symbol {
                Layout.preferredWidth: 12
                color: Theme.tertiaryLabel
                name: root.expanded ? "chevron.up" : "chevron.down"
                size: 9
            }
        }
    }

    FocusScope {
        id: drawer

        property real extent: root.expanded ? picker.height : 0 // on a spring, which swings below nothing

        clip: true
        height: Math.max(0, Math.floor(extent))
        width: parent.width
        y: header.height

        Behavior on extent { // but not while the page is away
            enabled: drawer.visible

            SpringNumber {
                damping: 0.7
                response: 0.3
            }
        }

        Column {
            id: picker

            width: parent.width

            Repeater { // none while closed
                model: root.expanded || drawer.extent !== 0 ? 1 : 0

                ActionPicker {
                    button: root.button
                    model: root.model
                    open: root.expanded
                    selectedAction: root.selectedAction
                    showsKeyInput: root.showsKeyInput
                    showsProfilePicker: root.showsProfilePicker
                    width: picker.width
                }
            }
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        color: Theme.separator
        height: 1
        visible: !root.last
        width: parent.width - 20
        x: 10
    }
}
