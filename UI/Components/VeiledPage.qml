import QtQuick
import Kelmoth.Components

/// A page that can be made unusable: then it is grey, blurred, faint and inert.
Item {
    id: root

    property bool veiled: false
    default property alias content: page.data

    Item {
        anchors.fill: parent
        enabled: !root.veiled
        opacity: veil.ready ? 0 : root.veiled ? 0.3 : 1

        Item {
            id: page

            anchors.fill: parent
        }
    }

    PageVeil {
        id: veil

        active: root.veiled
        anchors.fill: parent
        opacity: 0.3
        source: page
    }
}
