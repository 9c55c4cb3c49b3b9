pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Kelmoth.Components
import Kelmoth.Views

/// The four tabs. The arrow keys pick the next one.
Item {
    id: root

    required property ContentModel model

    /// Picks the tab that lies so many further, and gives it the focus.
    function step(by: int): void {
        const tab = repeater.itemAt(model.selectedTab + by) as PressArea;
        if (tab) {
            tab.triggered();
            tab.forceActiveFocus(Qt.TabFocusReason);
        }
    }

    Accessible.name: qsTr("Pages")
    Accessible.role: Accessible.PageTabList
    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)

    implicitHeight: row.implicitHeight + 8

    Surface {
        anchors.fill: parent
        color: Theme.reduceTransparency ? Theme.controlBackground : Theme.ultraThinMaterial
        radius: 14
        shadowColor: "#1a000000"
        shadowRadius: 5
        shadowY: 2
    }

    RowLayout {
        id: row

        anchors.fill: parent
        anchors.margins: 4
        spacing: 6

        Repeater {
            id: repeater

            model: root.model.tabs

            PressArea {
                id: tab

                required selected
                required property string icon
                required property int index
                required property string label

                Layout.fillWidth: true
                Layout.preferredWidth: 1
                focusRadius: 10
                implicitHeight: content.height + 20
                role: Accessible.PageTab
                scale: selected ? 1.05 : 1
                selectable: true
                text: qsTr(label)
                z: selected ? 1 : 0 // its glow lies over its neighbours

                onTriggered: root.model.selectTab(index)

                Behavior on scale {
                    SpringNumber {
                        damping: 0.7
                        response: 0.25
                    }
                }

                Surface {
                    anchors.fill: parent
                    borderColor: Theme.outline
                    borderWidth: 1
                    color: Theme.controlBackground
                    radius: 10
                }

                PressLook {
                    radius: 10
                    rests: tab.selected
                    target: tab
                }

                Surface {
                    anchors.fill: parent
                    color: Theme.accentFill
                    color2: Theme.accentFillEnd
                    opacity: tab.selected ? 1 : 0
                    radius: 10
                    shadowColor: Theme.alpha(Theme.accent, 0.4)
                    shadowRadius: 10
                    shadowY: 2
                    visible: opacity > 0

                    Behavior on opacity {
                        EaseInOut {
                            time: 180
                        }
                    }
                }

                Column {
                    id: content

                    anchors.centerIn: parent
                    spacing: 4
                    width: parent.width

                    Symbol {
                        anchors.horizontalCenter: parent.horizontalCenter
                        bold: tab.selected
                        color: tab.selected ? Theme.white : Theme.secondaryLabel
                        name: tab.icon
                        scale: tab.selected ? 1.2 : 1
                        shadowColor: Theme.alpha(Theme.accent, tab.selected ? 0.64 : 0)
                        shadowRadius: 8
                        size: 16

                        Behavior on scale {
                            SpringNumber {
                                damping: 0.7
                                response: 0.25
                            }
                        }

                        ColorFade on color {
                        }

                        ColorFade on shadowColor {
                        }
                    }

                    AppText {
                        color: tab.selected ? Theme.white : Theme.secondaryLabel
                        fontSizeMode: Text.HorizontalFit
                        horizontalAlignment: Text.AlignHCenter
                        minimumPixelSize: 8
                        size: 10
                        text: tab.text
                        weight: tab.selected ? Font.Bold : Font.Medium
                        width: parent.width - 4
                        x: 2

                        ColorFade on color {
                        }
                    }
                }
            }
        }
    }
}
