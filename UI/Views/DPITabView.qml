pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Kelmoth.Components
import Kelmoth.Views

/// The DPI page: the active stage's DPI, the stages, and values to set with one tap.
ScrollArea {
    id: root

    required property DPITabModel model

    Card {
        spacing: 6
        width: parent.width

        RowLayout {
            Layout.fillWidth: true
            spacing: 8

            Column {
                spacing: 2

                AppText {
                    font.family: Theme.roundedFamily
                    size: 32
                    text: root.model.shownDPIText
                    weight: Font.Bold
                }

                AppText {
                    color: Theme.secondaryLabel
                    size: 11
                    text: root.model.stageText
                }
            }

            Item {
                Layout.fillWidth: true
            }

            AppText {
                color: Theme.secondaryLabel
                size: 14
                text: qsTr("DPI")
                weight: Font.Medium
            }
        }

        ValueSlider {
            Layout.fillWidth: true
            from: 100
            step: 100
            text: qsTr("DPI")
            to: root.model.maxDPI
            usable: root.model.isEnabled
            value: root.model.sliderDPI

            onEditingEnded: root.model.endEditing()
            onEditingStarted: root.model.startEditing()
            onMoved: value => root.model.moveSlider(value)
        }

        Item { // each as wide as its text, whatever changes
            Layout.fillWidth: true
            implicitHeight: least.implicitHeight

            AppText {
                id: least

                color: Theme.tertiaryLabel
                size: 9
                text: "100"
            }

            AppText {
                anchors.right: parent.right
                color: Theme.tertiaryLabel
                size: 9
                text: root.model.maxDPIText
            }
        }
    }

    Column {
        spacing: 6
        width: parent.width

        SectionHeader {
            text: qsTr("STAGES")
            width: parent.width
        }

        TileGrid {
            columns: Math.max(1, root.model.stages.count)
            width: parent.width

            Repeater {
                model: root.model.stages

                Tile {
                    id: stage

                    required selected
                    required property string colorName
                    required property string label
                    required property string number
                    required property int stage

                    description: label + " DPI"
                    glow: 6
                    implicitHeight: content.height + 12
                    text: qsTr("Stage") + " " + number
                    usable: root.model.isEnabled

                    onTriggered: root.model.pickStage(stage.stage)

                    Column {
                        id: content

                        anchors.centerIn: parent
                        spacing: 2

                        Surface {
                            anchors.horizontalCenter: parent.horizontalCenter
                            color: Theme.stage(stage.colorName)
                            height: 6
                            shadowColor: Theme.alpha(color, stage.selected ? 0.6 : 0)
                            shadowRadius: 4
                            shape: Surface.Circle
                            width: 6

                            ColorFade on shadowColor {
                                response: 0.25
                            }

                            Surface {
                                anchors.fill: parent
                                anchors.margins: -1
                                borderColor: stage.selected ? Theme.alpha(Theme.white, 0.8) : Theme.outline
                                borderWidth: 1
                                shape: Surface.Circle

                                ColorFade on borderColor {
                                    response: 0.25
                                }
                            }
                        }

                        AppText {
                            anchors.horizontalCenter: parent.horizontalCenter
                            color: stage.selected ? Theme.white : Theme.label
                            size: 10
                            text: stage.number
                            weight: Font.Bold

                            ColorFade on color {
                                response: 0.25
                            }
                        }

                        AppText {
                            anchors.horizontalCenter: parent.horizontalCenter
                            color: stage.selected ? Theme.white : Theme.label
                            size: 9
                            text: stage.label

                            ColorFade on color {
                                response: 0.25
                            }
                        }
                    }
                }
            }
        }
    }

    Column {
        spacing: 6
        width: parent.width

        SectionHeader {
            text: qsTr("PRESETS")
            width: parent.width
        }

        TileGrid {
            columns: 4
            width: parent.width

            Repeater {
                model: root.model.presets

                Tile {
                    id: preset

                    required selected
                    required property string label
                    required property int value

                    glow: 4
                    implicitHeight: presetLabel.implicitHeight + 16
                    text: label
                    usable: root.model.isEnabled

                    onTriggered: root.model.pickPreset(value)

                    AppText {
                        id: presetLabel

                        anchors.centerIn: parent
                        color: preset.selected ? Theme.white : Theme.label
                        size: 10
                        text: preset.label
                        weight: Font.DemiBold

                        ColorFade on color {
                            response: 0.25
                        }
                    }
                }
            }
        }
    }

    AppText {
        color: Theme.tertiaryLabel
        horizontalAlignment: Text.AlignHCenter
        size: 10
        text: qsTr("Tap a stage to change DPI")
        topPadding: 4
        width: parent.width
    }
}
