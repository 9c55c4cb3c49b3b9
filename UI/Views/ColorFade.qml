import QtQuick
import Kelmoth.Components

/// For the colour of what lies on a ground that fades: it goes with it.
Behavior {
    ColorAnimation {
        duration: Theme.reduceMotion ? 0 : 150
    }
}
