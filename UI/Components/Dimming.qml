import QtQuick
import Kelmoth.Components

/// For the opacity of what is disabled now and then: a moment's pause is not worth a flicker.
Behavior {
    id: root

    required property Item item ///< whose state it is

    SequentialAnimation {
        PauseAnimation {
            duration: root.item.enabled ? 0 : 250
        }

        EaseOut {
            time: 150
        }
    }
}
