import QtQuick
import Kelmoth.Components

/// For the opacity of what cannot be used now and then: a moment's pause is not worth a flicker.
Behavior {
    id: root

    required property Operable item ///< whose state it is

    SequentialAnimation {
        PauseAnimation {
            duration: root.item.usable ? 0 : 250
        }

        EaseOut {
            time: 150
        }
    }
}
