import QtQuick
import Kelmoth.Components

/// Lies over the ground of `target` while it is pressed, and while the pointer is on it unless that one `rests`.
Surface {
    id: root

    required property PressArea target
    property bool rests: false ///< it has nothing to offer to the pointer, such as a choice that is made

    anchors.fill: parent
    color: target.pressed ? Theme.press : Theme.hover
    visible: target.pressed || target.hovered && !rests
}
