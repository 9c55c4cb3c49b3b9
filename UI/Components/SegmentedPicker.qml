pragma ComponentBehavior: Bound

import QtQuick
import Kelmoth.Components

/// One of a few texts, all of them in sight.
Item {
    id: root

    property var model: []
    property int currentIndex: 0
    property string text ///< its name: what is picked
    property bool usable: true
    readonly property real segmentWidth: (width - 4) / Math.max(1, model.length)
    property real markPlace: currentIndex ///< of the mark, on its way

    signal picked(int index)

    Accessible.name: text
    Accessible.role: Accessible.PageTabList
    Keys.onLeftPressed: FocusGuide.move(row, -1)
    Keys.onRightPressed: FocusGuide.move(row, 1)

    implicitHeight: 26
    implicitWidth: 260

    Behavior on markPlace {
        SpringNumber {
            damping: 0.8
            response: 0.25
        }
    }

    Surface {
        anchors.fill: parent
        color: Theme.underPageBackground
        radius: 7
    }

    Surface {
        borderColor: Theme.outline
        borderWidth: Theme.dark ? 1 : 0
        color: Theme.dark ? "#62626b" : Theme.controlBackground
        height: parent.height - 4
        radius: 5.5
        shadowColor: "#30000000"
        shadowRadius: 1.5
        shadowY: 1
        visible: root.currentIndex >= 0 && root.currentIndex < root.model.length
        width: root.segmentWidth
        x: Math.round(2 + root.markPlace * root.segmentWidth)
        y: 2
    }

    Row {
        id: row

        anchors.fill: parent
        anchors.margins: 2

        Repeater {
            model: root.model

            PressArea {
                id: segment

                required property int index
                required property string modelData

                focusRadius: 5
                height: row.height
                role: Accessible.PageTab
                selectable: true
                selected: index === root.currentIndex
                text: modelData
                usable: root.usable
                width: root.segmentWidth

                onTriggered: root.picked(index)

                PressLook {
                    radius: 5.5
                    rests: segment.selected
                    target: segment
                }

                AppText {
                    anchors.centerIn: parent
                    color: segment.selected ? Theme.label : Theme.secondaryLabel
                    horizontalAlignment: Text.AlignHCenter
                    size: 11
                    text: segment.modelData
                    weight: segment.selected ? Font.DemiBold : Font.Medium
                    width: Math.min(implicitWidth, segment.width - 8)
                }
            }
        }
    }
}
