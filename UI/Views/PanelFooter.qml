pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Kelmoth.Components
import Kelmoth.Views

/// The program's version, and the buttons for About and Quit.
Item {
    id: root

    required property ContentModel model
    property real bottomPadding: 0

    height: row.implicitHeight + bottomPadding

    RowLayout {
        id: row

        anchors.left: parent.left
        anchors.right: parent.right
        spacing: 14

        AppText {
            Layout.fillWidth: true
            color: Theme.tertiaryLabel
            size: 11
            text: root.model.footerText
        }

        FooterButton {
            id: about

            icon: "info.circle"
            name: qsTr("About Kelmoth")

            onTriggered: root.model.openAbout()
        }

        FooterButton {
            id: quit

            icon: "power"
            name: qsTr("Quit")

            onTriggered: root.model.terminate()
        }
    }

    Repeater {
        model: [about, quit]

        Hint {
            required property FooterButton modelData

            target: modelData.area
            x: Math.round(Math.min(modelData.x + (modelData.width - width) / 2, root.width + 8 - width))
            y: -height - 4
        }
    }
}
