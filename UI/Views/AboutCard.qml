import QtQuick
import QtQuick.Layouts
import Kelmoth.Components

/// A titled card of the About sheet, as wide as the sheet with a margin.
Item {
    id: root

    property string icon
    property color iconColor
    property string title
    default property alias rows: column.data

    implicitHeight: column.implicitHeight + 24

    Surface {
        anchors.fill: parent
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        borderColor: Theme.outline
        borderWidth: 1
        color: Theme.regularMaterial
        radius: 12
        shadowColor: "#1a000000"
        shadowRadius: 5
        shadowY: 2
    }

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.leftMargin: 28
        anchors.rightMargin: 28
        anchors.bottomMargin: 12
        anchors.topMargin: 12
        spacing: 8

        RowLayout {
            Layout.fillWidth: true
            spacing: 10

            Symbol {
                Layout.preferredWidth: 20
                color: Theme.readableSymbol(root.iconColor)
                name: root.icon
                size: 12
            }

            AppText {
                Accessible.role: Accessible.Heading
                Layout.fillWidth: true
                size: 12
                text: root.title
                weight: Font.DemiBold
            }
        }
    }
}
