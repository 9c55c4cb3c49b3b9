pragma ComponentBehavior: Bound

import QtQuick
import Kelmoth.Components

/// Presents About over the panel, which waits until it is closed.
FocusScope {
    id: root

    required property var model ///< ContentModel
    property real cornerRadius: 0 ///< of the panel
    property real presence: model.showAbout ? 1 : 0
    property int presentation: 0 ///< counts them

    focus: model.showAbout
    visible: presence > 0

    Behavior on presence {
        EaseOut {
        }
    }

    Rectangle {
        anchors.fill: parent
        color: "black"
        opacity: (Theme.dark ? 0.5 : 0.28) * root.presence
        radius: root.cornerRadius
    }

    MouseArea {
        acceptedButtons: Qt.AllButtons
        anchors.fill: parent
        hoverEnabled: true

        onWheel: wheel => wheel.accepted = true
    }

    Connections {
        function onShowAboutChanged(): void {
            root.presentation += root.model.showAbout ? 1 : 0;
        }

        target: root.model
    }

    Repeater { // a new one for every presentation
        model: root.model.showAbout || root.visible ? [root.presentation] : []

        AboutView {
            Accessible.name: qsTr("About Kelmoth")
            Accessible.role: Accessible.Dialog
            focus: true
            model: root.model.about
            opacity: root.presence
            x: 20
            y: 25 - 16 * (1 - root.presence)

            onDismissed: root.model.closeAbout()
        }
    }
}
