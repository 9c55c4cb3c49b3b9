import QtQuick
import Kelmoth.Components
import Kelmoth.Views

/// The program's emblem in a glow, which turns and grows into place.
Item {
    id: root

    required property AboutModel model

    implicitHeight: 100
    implicitWidth: 100
    rotation: model.iconRotation
    scale: model.iconScale

    Behavior on rotation {
        SpringNumber {
            always: true
            damping: 0.6
            response: 0.6
        }
    }

    Behavior on scale {
        SpringNumber {
            always: true
            damping: 0.6
            response: 0.6
        }
    }

    Item {
        anchors.fill: parent
        opacity: root.model.glowOpacity

        Behavior on opacity {
            EaseOut {
                always: true
                time: 800
            }
        }

        Surface {
            anchors.centerIn: parent
            blur: 25
            color: Theme.alpha(Theme.green, 0.3)
            height: 100
            shape: Surface.Circle
            width: 100
        }

        Surface {
            anchors.centerIn: parent
            blur: 15
            color: Theme.alpha(Theme.accent, 0.2)
            height: 80
            shape: Surface.Circle
            width: 80
        }
    }

    Symbol {
        readonly property bool isPicture: root.model.appIcon !== ""

        anchors.centerIn: parent
        color: Theme.green
        color2: Theme.accent
        color3: Theme.alpha(Theme.green, 0.8)
        file: root.model.appIcon
        name: "computermouse.fill"
        radius: 20
        shadow2Color: Theme.alpha(Theme.accent, 0.4)
        shadow2Radius: isPicture ? 12 : 8
        shadowColor: Theme.alpha(Theme.green, 0.6)
        shadowRadius: isPicture ? 20 : 15
        size: isPicture ? 80 : 52 // the picture is 96 points wide
    }
}
