import QtQuick
import Kelmoth.Components

/// The place of one page: it enters from the leading edge, leaves to the trailing one, and is not there else.
Item {
    id: root

    property bool current: false
    property bool moves: true ///< or is there, or gone, at once
    property real place: 1 ///< -1 before the leading edge, 0 in sight, 1 behind the trailing edge
    property alias veiled: page.veiled
    default property alias content: page.content

    enabled: current
    height: parent.height
    opacity: Math.max(0, 1 - Math.abs(place))
    visible: opacity > 0
    width: parent.width
    x: place * width

    states: State {
        name: "current"
        when: root.current

        PropertyChanges {
            root.place: 0
        }
    }

    transitions: [
        Transition {
            enabled: root.moves
            to: "current"

            EaseInOut {
                from: -1
                property: "place"
                target: root
                time: 180
            }
        },
        Transition {
            enabled: root.moves
            from: "current"

            EaseInOut {
                property: "place"
                target: root
                time: 180
            }
        }
    ]

    VeiledPage {
        id: page

        anchors.fill: parent
    }
}
