pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Kelmoth.Components
import Kelmoth.Views

/// The settings page: the program's own preferences, and the mouse's lift-off distance.
ScrollArea {
    id: root

    required property SettingsTabModel model

    Card {
        width: parent.width

        SectionHeader {
            Layout.fillWidth: true
            icon: "paintpalette.fill"
            text: qsTr("Appearance")
        }

        ChoiceRow {
            Layout.fillWidth: true

            Repeater {
                model: root.model.appearanceChoices

                ChoiceButton {
                    required selected
                    required icon
                    required property string label
                    required property int value

                    moves: true
                    text: qsTr(label)

                    onTriggered: root.model.pickAppearance(value)
                }
            }
        }
    }

    Card {
        width: parent.width

        SectionHeader {
            Layout.fillWidth: true
            icon: "globe"
            text: qsTr("Language")
        }

        ChoiceRow {
            Layout.fillWidth: true

            Repeater {
                model: root.model.languageChoices

                ChoiceButton {
                    required selected
                    required icon
                    required property string label
                    required property int value

                    text: qsTr(label)

                    onTriggered: root.model.pickLanguage(value)
                }
            }
        }
    }

    Card {
        width: parent.width

        RowLayout {
            Layout.fillWidth: true
            spacing: 4

            Symbol {
                Layout.preferredWidth: 20
                color: Theme.accent
                name: "power"
                size: 12
            }

            SwitchControl {
                Layout.fillWidth: true
                checked: root.model.launchAtLogin
                text: qsTr("Launch at Login")

                onToggled: value => root.model.flipLaunchAtLogin(value)
            }
        }

        AppText {
            Layout.fillWidth: true
            color: Theme.secondaryLabel
            size: 10
            text: root.model.loginMessage
            visible: text !== ""
            wrapMode: Text.Wrap
        }

        ChoiceButton {
            Layout.fillWidth: true
            checkable: false
            role: Accessible.Button
            text: qsTr("Open Login Items")
            visible: root.model.loginNeedsApproval

            onTriggered: root.model.openLoginItems()
        }
    }

    Column {
        spacing: 6
        width: parent.width

        SectionHeader {
            text: qsTr("DEVICE SETTINGS")
            width: parent.width
        }

        Card {
            width: parent.width

            RowLayout {
                Layout.fillWidth: true
                spacing: 6

                SectionHeader {
                    Layout.fillWidth: true
                    icon: "arrow.up.to.line"
                    text: qsTr("Lift Off Distance")
                }

                AppText {
                    color: Theme.secondaryLabel
                    size: 11
                    text: qsTr(root.model.liftOffLabel)
                }
            }

            ChoiceRow {
                Layout.fillWidth: true

                Repeater {
                    model: root.model.liftOffChoices

                    ChoiceButton {
                        required selected
                        required property string label
                        required property int value

                        text: qsTr(label)
                        usable: root.model.liftOffEnabled

                        onTriggered: root.model.pickLiftOff(value)
                    }
                }
            }
        }
    }
}
