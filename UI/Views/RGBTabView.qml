pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Kelmoth.Components
import Kelmoth.Views

/// The lighting page: effect, colour and brightness of one zone at a time.
ScrollArea {
    id: root

    required property RGBTabModel model
    readonly property real inner: preview.height + (model.showsZonePicker ? zones.height + spacing : 0) + (model.effects.count > 0 ? effects.height + spacing : 0) + 2 * 40 + 10 + 2 * 18 + 3 * spacing
    /// What the swatches and the strips have around them of the room that is left over.
    readonly property real air: Math.max(0, Math.min(14, Math.floor((height - inner) / 6)))

    SegmentedPicker {
        id: zones

        currentIndex: root.model.zoneIndex
        model: Array.from(root.model.zoneTitles, title => qsTr(title))
        text: qsTr("Lighting zone")
        usable: root.model.isEnabled
        visible: root.model.showsZonePicker
        width: parent.width

        onPicked: index => root.model.pickZone(index)
    }

    LightPreview {
        id: preview

        model: root.model
        width: parent.width
    }

    TileGrid {
        id: effects

        columns: 4
        visible: root.model.effects.count > 0
        width: parent.width

        Repeater {
            model: root.model.effects

            Tile {
                id: effect

                required selected
                required property string icon
                required property int index
                required property string label

                growth: 1.03
                implicitHeight: content.height + 16
                text: qsTr(label)
                usable: root.model.isEnabled

                onTriggered: {
                    preview.motion = LightPreview.Springy;
                    root.model.pickEffect(index);
                    preview.motion = LightPreview.None;
                }

                Column {
                    id: content

                    anchors.centerIn: parent
                    spacing: 2
                    width: parent.width

                    Symbol {
                        anchors.horizontalCenter: parent.horizontalCenter
                        color: effect.selected ? Theme.white : Theme.secondaryLabel
                        name: effect.icon
                        scale: effect.selected ? 1.15 : 1
                        size: 12

                        Behavior on scale {
                            SpringNumber {
                                damping: 0.8
                                response: 0.25
                            }
                        }

                        ColorFade on color {
                            response: 0.25
                        }
                    }

                    AppText {
                        color: effect.selected ? Theme.white : Theme.secondaryLabel
                        horizontalAlignment: Text.AlignHCenter
                        size: 8
                        text: effect.text
                        width: parent.width

                        ColorFade on color {
                            response: 0.25
                        }
                    }
                }
            }
        }
    }

    Item {
        height: swatches.height + 2 * root.air
        width: parent.width

        TileGrid {
            id: swatches

            columnSpacing: 0
            columns: 5
            rowSpacing: 10 + root.air
            width: parent.width
            y: root.air

            Repeater {
                model: root.model.presets

                Swatch {
                    required selected
                    required property int index
                    required property string label
                    required property color presetColor

                    color: presetColor
                    text: label
                    usable: root.model.isEnabled

                    onTriggered: {
                        preview.motion = LightPreview.Soft;
                        root.model.pickPreset(index);
                        preview.motion = LightPreview.None;
                    }
                }
            }
        }
    }

    Strip {
        height: implicitHeight + root.air
        markerColor: Qt.hsva(shownPosition, 0.9, 0.9, 1)
        moves: preview.motion === LightPreview.Soft
        position: root.model.hue
        stepSize: 0.02
        stops: Array.from({
            length: 7
        }, (none, i) => ({
                    color: Qt.hsva(i / 6, 0.9, 0.9, 1),
                    position: i / 6
                }))
        text: qsTr("Hue")
        usable: root.model.isEnabled
        width: parent.width

        onEnded: root.model.endHueDrag()
        onMoved: position => root.model.dragHue(position)
    }

    RowLayout {
        spacing: 8
        width: parent.width

        Symbol {
            color: Theme.secondaryLabel
            name: "sun.min"
            size: 13
        }

        Strip {
            property color light: root.model.currentColor

            Layout.fillWidth: true
            Layout.preferredHeight: implicitHeight + root.air
            Layout.leftMargin: knobWidth / 2 - 2 // clear of the knob at either end
            Layout.rightMargin: knobWidth / 2 - 2
            markerColor: Qt.tint(Theme.underPageBackground, Theme.alpha(light, shownPosition))
            position: root.model.brightness
            stops: [
                {
                    color: Theme.underPageBackground,
                    position: 0
                },
                {
                    color: light,
                    position: 1
                }
            ]
            text: qsTr("Brightness")
            usable: root.model.isEnabled

            onEnded: root.model.endBrightnessDrag()
            onMoved: position => root.model.dragBrightness(position)

            ColorFade on light {
                moves: preview.motion === LightPreview.Soft
            }
        }

        Symbol {
            color: Theme.secondaryLabel
            name: "sun.max"
            size: 15
        }

        AppText {
            Layout.preferredWidth: 36
            color: Theme.secondaryLabel
            horizontalAlignment: Text.AlignRight
            size: 10
            text: root.model.brightnessText
            weight: Font.Medium
        }
    }
}
