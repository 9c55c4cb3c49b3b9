import QtQuick
import Kelmoth.Components

/// What the value of `handle`, in which it lies, is dragged by.
Surface {
    id: root

    required property ValueHandle handle

    anchors.verticalCenter: parent.verticalCenter
    height: width
    scale: handle.knobHovered && handle.enabled && !handle.dimmed ? 1.12 : 1
    shadowColor: "#48000000"
    shadowRadius: 1.5
    shadowY: 1
    shape: Surface.Circle
    width: handle.knobWidth
    x: Math.round(handle.inset + handle.fraction * (handle.width - 2 * handle.inset) - width / 2)

    Behavior on scale {
        SpringNumber {
            damping: 0.7
            response: 0.2
        }
    }

    FocusRing {
        shape: Surface.Circle
        target: root.handle
    }
}
