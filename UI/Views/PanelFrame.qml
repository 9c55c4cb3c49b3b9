import QtQuick
import Kelmoth.Components

/// The panel with what surrounds it in its window.
FocusScope {
    id: root

    required property var model ///< ContentModel
    property real cornerRadius: 0
    property int margin: 0 ///< room for the shadow; none without one

    function fadeIn() {
        fade.restart();
    }

    focus: true
    implicitHeight: 610 + 2 * margin
    implicitWidth: 340 + 2 * margin

    NumberAnimation {
        id: fade

        duration: 150
        easing.type: Easing.InOutQuad
        from: 0.3 // what is first drawn can be seen
        property: "opacity"
        target: root
        to: 1
    }

    Surface {
        anchors.fill: panel
        color: Theme.windowBackground
        radius: root.cornerRadius
        shadowColor: Theme.alpha("black", Theme.dark ? 0.6 : 0.35)
        shadowRadius: root.margin * 0.7
        shadowY: root.margin * 0.15
        visible: root.margin > 0
    }

    ContentView {
        id: panel

        anchors.fill: parent
        anchors.margins: root.margin
        cornerRadius: root.cornerRadius
        focus: true
        model: root.model
    }

    Rectangle {
        anchors.fill: panel
        border.color: Theme.outline
        border.width: 1
        color: "transparent"
        radius: root.cornerRadius
        visible: root.cornerRadius > 0
    }
}
