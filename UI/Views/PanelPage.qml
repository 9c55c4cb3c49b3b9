import QtQuick
import Kelmoth.Components
import Kelmoth.Views

/// The place of one page: it enters from the leading edge, leaves to the trailing one, and is not there else. The
/// page is made when it is first needed, and kept.
Item {
    id: root

    required property url view ///< of the page, a view with a model
    required property TabModel model ///< of the page

    property bool current: false
    property bool moves: true ///< or is there, or gone, at once
    property real place: 1 ///< -1 before the leading edge, 0 in sight, 1 behind the trailing edge
    property alias veiled: page.veiled
    readonly property alias waits: page.waits

    function prepare(): void {
        page.prepare();
    }

    function load() {
        if (current && loader.status === Loader.Null) {
            loader.setSource(view, {
                "model": model
            });
        }
    }

    enabled: current
    height: parent.height
    opacity: Math.max(0, 1 - Math.abs(place))
    visible: opacity > 0
    width: parent.width
    x: place * width

    Component.onCompleted: load()
    onCurrentChanged: load()

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

        Loader {
            id: loader

            anchors.fill: parent
        }
    }
}
