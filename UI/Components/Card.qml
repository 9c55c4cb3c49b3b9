import QtQuick
import QtQuick.Layouts
import Kelmoth.Components

/// A framed ground for a column of things.
Item {
    id: root

    property real radius: 10
    property real padding: 12
    property color color: Theme.controlBackground
    property alias spacing: column.spacing
    default property alias content: column.data

    implicitHeight: column.implicitHeight + 2 * padding
    implicitWidth: column.implicitWidth + 2 * padding

    Surface {
        anchors.fill: parent
        borderColor: Theme.outline
        borderWidth: 1
        color: root.color
        radius: root.radius
    }

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.margins: root.padding
        spacing: 8
    }
}
