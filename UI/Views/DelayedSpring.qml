import QtQuick
import Kelmoth.Components

/// A spring of the About sheet's entrance that waits first. Plays for everybody, as the entrance does.
SequentialAnimation {
    id: root

    property int delay: 0 ///< milliseconds
    property real response: 0.5
    property real damping: 0.7

    PauseAnimation {
        duration: root.delay
    }

    SpringNumber {
        always: true
        damping: root.damping
        response: root.response
    }
}
