pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Kelmoth.Components
import Kelmoth.Views

/// What the program is: emblem, version, features, supported mice. Plays its entrance when it is made.
FocusScope {
    id: root

    required property AboutModel model
    property real arrival: model.appeared ? 1 : 0
    property real featuresArrival: model.featuresAppeared ? 1 : 0
    property real devicesArrival: model.devicesAppeared ? 1 : 0

    signal dismissed

    Accessible.name: qsTr("About Kelmoth")
    Accessible.role: Accessible.Dialog
    focus: true
    implicitHeight: 560
    implicitWidth: 300

    // What is changed before does not move.
    Component.onCompleted: Qt.callLater(model.shown) // qmllint disable type

    Behavior on arrival {
        DelayedSpring {
            delay: 200
        }
    }

    Behavior on featuresArrival {
        DelayedSpring {
            delay: 400
        }
    }

    Behavior on devicesArrival {
        DelayedSpring {
            delay: 600
        }
    }

    Surface {
        anchors.fill: parent
        borderColor: Theme.outline
        borderWidth: 1
        color: Qt.tint(Theme.windowBackground, Theme.ultraThinMaterial)
        radius: 12
    }

    Surface {
        anchors.fill: parent
        anchors.margins: 1
        blur: 30
        clipped: true
        color: Theme.alpha(Theme.accent, 0.15)
        color2: Theme.alpha(Theme.green, 0.1)
        color3: "transparent"
        radius: 11
    }

    Flickable { // where the screen is too low for the whole sheet
        id: viewport

        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        clip: interactive
        contentHeight: Math.max(height, column.height - 24)
        contentWidth: width
        interactive: contentHeight > height

        Column {
            id: column

            // What the font of a desktop takes more than others, the paddings at the ends give, then the gaps.
            readonly property real inner: emblem.height + title.height + badge.height + features.height + devices.height + disclaimer.height + bottom.height

            anchors.centerIn: parent
            spacing: Math.max(2, Math.min(12, Math.floor((root.height + 24 - inner) / 6)))
            width: parent.width

            Item {
                id: emblem

                anchors.horizontalCenter: parent.horizontalCenter
                height: 120
                width: 100

                AboutEmblem {
                    anchors.bottom: parent.bottom
                    model: root.model
                }
            }

            GradientText {
                id: title

                Accessible.name: text
                Accessible.role: Accessible.Heading
                anchors.horizontalCenter: parent.horizontalCenter
                color: Theme.label
                color2: Theme.alpha(Theme.label, 0.8)
                opacity: Math.min(1, root.arrival)
                size: 28
                text: qsTr("Kelmoth")
                weight: Font.Bold

                transform: Translate {
                    y: 20 * (1 - root.arrival)
                }
            }

            Item {
                id: badge

                anchors.horizontalCenter: parent.horizontalCenter
                height: version.implicitHeight + 8
                opacity: Math.min(1, root.arrival)
                scale: 0.8 + 0.2 * root.arrival
                width: version.implicitWidth + 24

                Surface {
                    anchors.fill: parent
                    color: Theme.ultraThinMaterial
                    shape: Surface.Capsule
                }

                AppText {
                    id: version

                    anchors.centerIn: parent
                    color: Theme.secondaryLabel
                    size: 11
                    text: root.model.versionText
                    weight: Font.Medium
                }
            }

            AboutCard {
                id: features

                icon: "sparkles"
                iconColor: Theme.yellow
                opacity: Math.min(1, root.featuresArrival)
                title: qsTr("Features")
                width: parent.width

                transform: Translate {
                    x: -30 * (1 - root.featuresArrival)
                }

                Repeater {
                    model: root.model.features

                    AboutFeatureRow {
                        required property var modelData

                        Layout.fillWidth: true
                        appeared: root?.model.featuresAppeared ?? false // which can change while the sheet goes
                        color: Theme[modelData.colorName]
                        delay: 0.4 + modelData.delay
                        icon: modelData.icon
                        text: qsTr(modelData.label)
                    }
                }
            }

            AboutCard {
                id: devices

                icon: "checkmark.seal.fill"
                iconColor: Theme.green
                opacity: Math.min(1, root.devicesArrival)
                title: qsTr("Supported Devices")
                width: parent.width

                transform: Translate {
                    x: 30 * (1 - root.devicesArrival)
                }

                Repeater {
                    model: root.model.devices

                    DeviceRow {
                        required property var modelData

                        Layout.fillWidth: true
                        appeared: root?.model.devicesAppeared ?? false
                        badge: modelData.badge
                        delay: 0.6 + modelData.delay
                        name: modelData.name
                    }
                }
            }

            AppText {
                id: disclaimer

                anchors.horizontalCenter: parent.horizontalCenter
                color: Theme.secondaryLabel // the smallest text: fainter, it is hard to read
                opacity: Math.min(1, root.arrival)
                size: 8
                text: qsTr("Not affiliated with Razer Inc.")
                topPadding: 4
            }

            Item {
                id: bottom

                anchors.horizontalCenter: parent.horizontalCenter
                height: close.height + 16
                width: close.width

                PressArea {
                    id: close

                    focus: true
                    focusShape: Surface.Capsule
                    height: closeLabel.implicitHeight + 16
                    opacity: Math.min(1, root.arrival)
                    scale: 0.5 + 0.5 * root.arrival
                    text: qsTr("Close")
                    width: closeLabel.implicitWidth + 48

                    onTriggered: root.dismissed()

                    Surface {
                        anchors.fill: parent
                        color: Theme.accentFill
                        color2: Theme.alpha(Theme.accentFill, 0.8)
                        gradientDirection: Surface.TopToBottom
                        shadowColor: Theme.alpha(Theme.accent, 0.4)
                        shadowRadius: 8
                        shadowY: 4
                        shape: Surface.Capsule
                    }

                    PressLook {
                        shape: Surface.Capsule
                        target: close
                    }

                    AppText {
                        id: closeLabel

                        anchors.centerIn: parent
                        color: Theme.white
                        size: 13
                        text: close.text
                        weight: Font.DemiBold
                    }
                }
            }
        }
    }

    ScrollHint {
        flickable: viewport
        x: root.width - 7
    }
}
