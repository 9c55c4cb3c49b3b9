import QtQuick
import Kelmoth.Components
import Kelmoth.Views

/// The panel with what surrounds it in its window.
FocusScope {
    id: root

    required property ContentModel model
    property real cornerRadius: 0
    property rect area: Qt.rect(margin, margin, 340, 610) ///< of the panel, on whole pixels of the screen
    property int margin: 0 ///< room for the shadow; none without one
    property real zoom: 1 ///< how much larger than usual the panel is drawn

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
        target: root.margin > 0 ? root : panel // without a compositor nothing shines through
        to: 1
    }

    Rectangle { // the window is opaque where it has no shadow, also beside round corners
        anchors.fill: parent
        color: Theme.windowBackground
        visible: root.margin === 0
    }

    Item { // of the panel
        id: place

        height: root.area.height
        width: root.area.width
        x: root.area.x
        y: root.area.y
    }

    Surface {
        anchors.fill: place
        color: Theme.windowBackground
        radius: root.cornerRadius
        shadowColor: Theme.alpha("black", Theme.dark ? 0.6 : 0.35)
        shadowRadius: root.margin * 0.35
        shadowY: root.margin * 0.15
        visible: root.margin > 0
    }

    ContentView {
        id: panel

        cornerRadius: root.cornerRadius / root.zoom
        focus: true
        height: place.height / root.zoom
        model: root.model
        scale: root.zoom
        transformOrigin: Item.TopLeft
        width: place.width / root.zoom
        x: place.x
        y: place.y
    }

    Surface {
        anchors.fill: place
        borderColor: Theme.outline
        borderWidth: 1
        radius: root.cornerRadius
        visible: root.cornerRadius > 0
    }

    WholeFrames {
        anchors.fill: parent
        edgeColor: root.margin === 0 ? Theme.windowBackground : "transparent"
        z: 1000
    }
}
