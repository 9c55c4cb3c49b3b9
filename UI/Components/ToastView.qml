import QtQuick
import Kelmoth.Components

/// A short message at the panel's upper edge.
Operable {
    id: root

    property int type: 3 ///< 0 error, 1 warning, 2 success, 3 information
    property string message
    property real maximumWidth: 340
    readonly property color tint: type === 0 ? Theme.red : type === 1 ? Theme.orange : type === 2 ? Theme.green : Theme.blue
    readonly property string icon: ["xmark.circle.fill", "exclamationmark.triangle.fill", "checkmark.circle.fill", "info.circle.fill"][type] ?? ""
    readonly property real missing: Math.max(0, implicitWidth - width, implicitHeight - height) ///< room, while it grows

    signal tapped

    Accessible.role: role

    implicitHeight: row.height + 24
    implicitWidth: Math.min(maximumWidth, row.implicitWidth + 32 + 40)
    role: Accessible.AlertMessage
    text: message

    onPressWished: tapped()

    Surface { // covers what is beneath, which is not blurred
        anchors.fill: parent
        anchors.leftMargin: 20
        anchors.rightMargin: 20
        borderColor: Theme.alpha(root.tint, 0.3)
        borderWidth: 1
        color: Qt.tint(Theme.controlBackground, Theme.regularMaterial)
        radius: 12
        shadowColor: Theme.alpha("black", 0.1)
        shadowRadius: 8
        shadowY: 4
    }

    Item { // what is larger than the surface, which may be growing
        anchors.fill: parent
        anchors.leftMargin: 20
        anchors.rightMargin: 20
        clip: true

        Row {
            id: row

            anchors.left: parent.left
            anchors.leftMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            spacing: 12

            Symbol {
                id: symbol

                anchors.verticalCenter: parent.verticalCenter
                bold: true
                color: root.tint
                name: root.icon
                size: 20
            }

            AppText {
                anchors.verticalCenter: parent.verticalCenter
                maximumLineCount: 3
                opacity: 1 - Math.min(1, root.missing / 100) // comes as the room for it grows
                size: 13
                text: root.message
                weight: Font.Medium
                width: Math.min(implicitWidth, root.maximumWidth - 40 - 32 - 12 - symbol.width)
                wrapMode: Text.Wrap
            }
        }
    }

    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds // however long it is held

        onTapped: root.tapped()
    }
}
