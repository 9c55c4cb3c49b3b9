import QtQuick
import QtQuick.Layouts
import Kelmoth.Components

/// The program's version, and the buttons for About and Quit.
Item {
    id: root

    required property var model ///< ContentModel
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
            icon: "info.circle"
            name: qsTr("About Kelmoth")

            onTriggered: root.model.openAbout()
        }

        FooterButton {
            icon: "power"
            name: qsTr("Quit")

            onTriggered: root.model.terminate()
        }
    }
}
