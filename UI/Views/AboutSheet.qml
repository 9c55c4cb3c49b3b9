import QtQuick
import Kelmoth.Components
import Kelmoth.Views

/// Presents About over the panel, which waits until it is closed.
FocusScope {
    id: root

    required property ContentModel model
    property real cornerRadius: 0 ///< of the panel
    property real presence: model.showAbout && view.status === Loader.Ready ? 1 : 0

    function present() {
        view.source = "";
        view.setSource(Qt.resolvedUrl("AboutView.qml"), {
            "model": model.about
        });
    }

    focus: model.showAbout
    visible: presence > 0

    Component.onCompleted: if (model.showAbout) present()
    onVisibleChanged: if (!visible && !model.showAbout) view.source = ""

    Behavior on presence {
        EaseOut {
        }
    }

    Rectangle {
        // As one: what lies under it does not show in strips and cut letters beside the sheet.
        color: Qt.tint(Theme.windowBackground, Theme.alpha("black", Theme.dark ? 0.5 : 0.28))
        height: Math.ceil(parent.height) // the panel may end within a logical pixel
        opacity: 0.92 * root.presence
        radius: root.cornerRadius
        width: Math.ceil(parent.width)
    }

    MouseArea {
        acceptedButtons: Qt.AllButtons
        anchors.fill: parent
        hoverEnabled: true

        onWheel: wheel => wheel.accepted = true
    }

    Connections {
        function onShowAboutChanged(): void {
            if (root.model.showAbout) {
                root.present();
            }
        }

        target: root.model
    }

    Loader { // a new view for every presentation, made between the frames
        id: view

        asynchronous: true
        focus: true
        height: Math.min(560, root.height - 20)
        opacity: root.presence
        width: 300
        x: 20
        y: Math.round((root.height - height) / 2) - 16 * (1 - root.presence)
    }

    Connections {
        function onDismissed(): void {
            root.model.closeAbout();
        }

        ignoreUnknownSignals: true
        target: view.item
    }
}
