import QtQuick
import Kelmoth.Components

/// A value on a line. The owner binds `value` and takes what `moved` tells; a drag is one edit, and so is each
/// arrow key and each step by assistive tools.
Item {
    id: root

    property real from: 0
    property real to: 1
    property real step: 0 ///< 0: any value
    property real value: 0
    property string text ///< what it sets
    readonly property alias editing: area.editing
    readonly property real position: to > from ? Math.max(0, Math.min(1, (value - from) / (to - from))) : 0

    signal moved(value: real)
    signal editingStarted
    signal editingEnded

    function rounded(wish: real): real {
        return Math.max(from, Math.min(to, step > 0 ? from + Math.round((wish - from) / step) * step : wish));
    }

    /// An edit that begins and ends at once.
    function edit(wish: real): void {
        if (enabled && !editing && rounded(wish) !== value) {
            editingStarted();
            moved(rounded(wish));
            editingEnded();
        }
    }

    implicitHeight: 20
    implicitWidth: 200
    opacity: enabled ? 1 : 0.45

    Surface {
        id: track

        anchors.verticalCenter: parent.verticalCenter
        color: Theme.underPageBackground
        height: 4
        shape: Surface.Capsule
        width: parent.width
    }

    Surface {
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.accentFill
        height: 4
        shape: Surface.Capsule
        width: knob.x + knob.width / 2
    }

    Surface {
        id: knob

        anchors.verticalCenter: parent.verticalCenter
        borderColor: Theme.outline
        borderWidth: 0.5
        color: Theme.knob
        height: 16
        shadowColor: "#48000000"
        shadowRadius: 3
        shadowY: 1
        shape: Surface.Circle
        width: 16
        x: Math.round(root.position * (root.width - width))

        FocusRing {
            shape: Surface.Circle
            target: handle
        }
    }

    Item {
        id: handle

        // By these names assistive tools know them.
        readonly property real minimumValue: root.from
        readonly property real maximumValue: root.to
        readonly property real stepSize: root.step > 0 ? root.step : (root.to - root.from) / 20
        property real value: root.value

        Accessible.focusable: true
        Accessible.name: root.text
        Accessible.role: Accessible.Slider
        Accessible.onDecreaseAction: root.edit(root.value - stepSize)
        Accessible.onIncreaseAction: root.edit(root.value + stepSize)
        Keys.onDownPressed: root.edit(root.value - stepSize)
        Keys.onLeftPressed: root.edit(root.value - stepSize)
        Keys.onRightPressed: root.edit(root.value + stepSize)
        Keys.onUpPressed: root.edit(root.value + stepSize)

        activeFocusOnTab: true
        anchors.fill: parent

        onValueChanged: if (value !== root.value) {
            root.edit(value);
            value = Qt.binding(() => root.value);
        }
    }

    MouseArea {
        id: area

        property bool editing: false

        function valueAt(x: real): real {
            return root.rounded(root.from + (x - knob.width / 2) / Math.max(1, width - knob.width) * (root.to - root.from));
        }

        function finish(): void {
            if (editing) {
                editing = false;
                root.editingEnded();
            }
        }

        anchors.fill: parent
        preventStealing: true

        onCanceled: finish()
        onPositionChanged: event => root.moved(valueAt(event.x))
        onPressed: event => {
            handle.forceActiveFocus(Qt.MouseFocusReason);
            editing = true;
            root.editingStarted();
            root.moved(valueAt(event.x));
        }
        onReleased: finish()
    }
}
