import QtQuick
import Kelmoth.Components

/// A bar of colours with a marker on it; the whole width is its range.
Item {
    id: root

    property real position: 0 ///< 0 to 1; the owner's
    property var stops: []    ///< of the gradient: objects with position and color
    property string text      ///< what it sets
    property real stepSize: 0.05
    property color markerColor: "transparent"

    signal moved(position: real)
    signal ended

    /// A drag that begins and ends at once.
    function edit(wish: real): void {
        const bounded = Math.max(0, Math.min(1, wish));
        if (enabled && !area.pressed && bounded !== position) {
            moved(bounded);
            ended();
        }
    }

    implicitHeight: 18
    implicitWidth: 200
    opacity: enabled ? 1 : 0.45

    Surface {
        anchors.verticalCenter: parent.verticalCenter
        borderColor: Theme.outline
        borderWidth: 1
        gradientDirection: Surface.LeadingToTrailing
        height: 12
        shape: Surface.Capsule
        stops: root.stops
        width: parent.width
    }

    Surface {
        id: marker

        anchors.verticalCenter: parent.verticalCenter
        borderColor: "white"
        borderWidth: 3
        color: root.markerColor
        height: 18
        shadowColor: "#60000000"
        shadowRadius: 3
        shadowY: 1
        shape: Surface.Circle
        width: 18
        x: Math.round(Math.max(0, Math.min(1, root.position)) * (root.width - width))

        FocusRing {
            shape: Surface.Circle
            target: handle
        }
    }

    Item {
        id: handle

        readonly property real minimumValue: 0
        readonly property real maximumValue: 1
        readonly property real stepSize: root.stepSize
        property real value: root.position

        Accessible.focusable: true
        Accessible.name: root.text
        Accessible.role: Accessible.Slider
        Accessible.onDecreaseAction: root.edit(root.position - stepSize)
        Accessible.onIncreaseAction: root.edit(root.position + stepSize)
        Keys.onDownPressed: root.edit(root.position - stepSize)
        Keys.onLeftPressed: root.edit(root.position - stepSize)
        Keys.onRightPressed: root.edit(root.position + stepSize)
        Keys.onUpPressed: root.edit(root.position + stepSize)

        activeFocusOnTab: true
        anchors.fill: parent

        onValueChanged: if (value !== root.position) {
            root.edit(value);
            value = Qt.binding(() => root.position);
        }
    }

    MouseArea {
        id: area

        function positionAt(x: real): real {
            return Math.max(0, Math.min(1, x / Math.max(1, width)));
        }

        anchors.fill: parent
        preventStealing: true

        onCanceled: root.ended()
        onPositionChanged: event => root.moved(positionAt(event.x))
        onPressed: event => {
            handle.forceActiveFocus(Qt.MouseFocusReason);
            root.moved(positionAt(event.x));
        }
        onReleased: root.ended()
    }
}
