import QtQuick
import Kelmoth.Components

/// A page that can be made unusable: then it is inert at once and, in one frame, grey, blurred and faint.
Item {
    id: root

    property bool veiled: false
    readonly property bool inSight: visible && Window.visibility !== Window.Hidden
    property bool wasInSight: false ///< when it was made unusable
    readonly property bool waits: veiled && wasInSight && !veil.ready ///< and looks as before: its veil is being made
    default property alias content: page.data

    /// To call before what makes it unusable changes it: its veil then shows what was to be seen last.
    function prepare(): void {
        if (inSight) {
            veil.prepare();
        }
    }

    onInSightChanged: wasInSight = inSight && !veiled
    onVeiledChanged: if (!veiled) wasInSight = inSight

    Item {
        anchors.fill: parent
        enabled: !root.veiled
        opacity: root.veiled && !root.waits ? 0 : 1

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
