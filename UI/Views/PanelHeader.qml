import QtQuick
import QtQuick.Layouts
import Kelmoth.Components
import Kelmoth.Views

/// Which mouse is configured, how it is connected, and its battery.
Item {
    id: root

    required property ContentModel model
    property real bottomPadding: 0
    property real topPadding: 0

    height: row.implicitHeight + topPadding + bottomPadding

    RowLayout {
        id: row

        anchors.left: parent.left
        anchors.right: parent.right
        spacing: 10
        y: root.topPadding

        Item {
            implicitHeight: 44
            implicitWidth: 44

            Surface {
                anchors.fill: parent
                blur: 4
                color: Theme.alpha(Theme.accent, 0.15)
                shape: Surface.Circle
            }

            Surface {
                // A line of 2 points along a circle of 40.
                anchors.centerIn: parent
                borderColor: Theme.alpha(Theme.accent, 0.6)
                borderWidth: 2
                height: 42
                shape: Surface.Circle
                width: 42
            }

            Symbol {
                anchors.centerIn: parent
                color: Theme.accent
                color2: Theme.alpha(Theme.accent, 0.7)
                name: "computermouse.fill"
                shadowColor: Theme.alpha(Theme.accent, 0.4)
                shadowRadius: 5
                size: 18
            }
        }

        Column {
            Layout.fillWidth: true
            spacing: 1

            AppText {
                maximumLineCount: 2
                size: 13
                text: root.model.deviceName
                weight: Font.DemiBold
                width: parent.width
                wrapMode: Text.Wrap
            }

            Row {
                spacing: 3

                Symbol {
                    anchors.verticalCenter: parent.verticalCenter
                    color: Theme.tertiaryLabel
                    name: root.model.connectionIcon
                    size: 7
                }

                AppText {
                    anchors.verticalCenter: parent.verticalCenter
                    color: Theme.tertiaryLabel
                    size: 8
                    text: qsTr(root.model.connectionLabel)
                }
            }
        }

        Item {
            Accessible.description: root.model.isCharging ? qsTr("Charging") : ""
            Accessible.name: qsTr("Battery")
            Accessible.role: Accessible.Grouping
            implicitHeight: battery.implicitHeight + 8
            implicitWidth: battery.width + 12
            visible: root.model.showsBattery

            Surface {
                anchors.fill: parent
                color: Theme.alpha(Theme.accent, 0.15)
                radius: 6
            }

            TextMetrics {
                id: widest

                font: level.font
                text: "100%"
            }

            Column {
                id: battery

                anchors.centerIn: parent
                spacing: 1
                width: Math.max(symbol.implicitWidth, Math.ceil(widest.advanceWidth)) // whatever the level

                Symbol {
                    id: symbol

                    anchors.horizontalCenter: parent.horizontalCenter
                    color: Theme.accent
                    name: root.model.batteryIcon
                    size: 10
                }

                AppText {
                    id: level

                    anchors.horizontalCenter: parent.horizontalCenter
                    color: Theme.accent
                    size: 8
                    text: root.model.batteryText
                    weight: Font.Medium
                }
            }
        }
    }
}
