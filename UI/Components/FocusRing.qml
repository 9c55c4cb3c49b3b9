import QtQuick
import Kelmoth.Components

/// Shows that `target`, around which it lies, has the keyboard's focus.
Surface {
    id: ring

    required property Item target

    anchors.fill: parent
    anchors.margins: -3
    borderColor: Theme.alpha(Theme.accent, 0.85)
    borderWidth: 2
    visible: ring.target.activeFocus && FocusGuide.visible
    z: 1
}
