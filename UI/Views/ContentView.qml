pragma ComponentBehavior: Bound

import QtQuick
import Kelmoth.Components
import Kelmoth.Views

/// The panel: header, tabs, the page of the selected tab, footer; over them the About sheet and toasts.
FocusScope {
    id: root

    required property ContentModel model
    property real cornerRadius: 0
    readonly property bool onScreen: Window.visibility !== Window.Hidden
    property real entrance: model.appeared ? 1 : 0

    Keys.onEscapePressed: event => event.accepted = model.dismiss()

    focus: true
    implicitHeight: 610
    implicitWidth: 340

    Component.onCompleted: if (onScreen) model.panelShown()
    onOnScreenChanged: if (onScreen) model.panelShown()

    Behavior on entrance {
        EaseOut {
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.windowBackground
        visible: root.cornerRadius === 0 // else what it lies in is its ground
    }

    FocusScope { // remembers the focus while the sheet has it
        anchors.fill: parent
        enabled: !root.model.showAbout
        focus: !root.model.showAbout

        Column {
            anchors.left: parent.left
            anchors.leftMargin: 16
            anchors.right: parent.right
            anchors.rightMargin: 16
            y: Math.round((parent.height - height) / 2)

            PanelHeader {
                id: header

                bottomPadding: 10
                model: root.model
                opacity: root.entrance
                topPadding: 14
                width: parent.width

                transform: Translate {
                    y: -20 * (1 - root.entrance)
                }
            }

            PanelTabBar {
                id: tabs

                model: root.model
                opacity: root.entrance
                scale: 0.9 + 0.1 * root.entrance
                width: parent.width
            }

            Item {
                id: gap

                height: 12
                width: parent.width
            }

            Item {
                height: Math.max(0, Math.min(400, root.height - header.height - tabs.height - gap.height - footer.height))
                opacity: root.entrance
                width: parent.width

                transform: Translate {
                    y: 20 * (1 - root.entrance)
                }

                PanelPage {
                    id: dpiPage

                    current: root.model.selectedTab === 0
                    model: root.model.dpiTab
                    moves: root.entrance > 0
                    veiled: !root.model.isDeviceSupported
                    view: Qt.resolvedUrl("DPITabView.qml")
                }

                PanelPage {
                    id: rgbPage

                    current: root.model.selectedTab === 1
                    model: root.model.rgbTab
                    moves: root.entrance > 0
                    veiled: !root.model.isDeviceSupported
                    view: Qt.resolvedUrl("RGBTabView.qml")
                }

                PanelPage {
                    id: buttonsPage

                    current: root.model.selectedTab === 2
                    model: root.model.buttonsTab
                    moves: root.entrance > 0
                    veiled: !root.model.isDeviceSupported
                    view: Qt.resolvedUrl("ButtonsTabView.qml")
                }

                PanelPage {
                    current: root.model.selectedTab === 3
                    model: root.model.settingsTab
                    moves: root.entrance > 0
                    view: Qt.resolvedUrl("SettingsTabView.qml")
                }

                PanelNotice {
                    anchors.fill: parent
                    model: root.model
                    waits: dpiPage.waits || rgbPage.waits || buttonsPage.waits
                }
            }

            PanelFooter {
                id: footer

                bottomPadding: 10
                model: root.model
                opacity: root.entrance
                width: parent.width
            }
        }
    }

    Connections {
        function onDeviceLost(): void {
            dpiPage.prepare();
            rgbPage.prepare();
            buttonsPage.prepare();
        }

        target: root.model
    }

    AboutSheet {
        anchors.fill: parent
        cornerRadius: root.cornerRadius
        model: root.model
    }

    ToastModifier {
        anchors.fill: parent
        model: root.model.toast
        z: 999
    }
}
