import QtQuick
import Kelmoth.Components

/// Lays a toast over the panel's upper edge: it springs in from above and fades out as it leaves.
Item {
    id: root

    required property var model ///< ToastModel

    ToastView {
        id: toast

        anchors.horizontalCenter: parent.horizontalCenter
        enabled: root.model.shown
        message: qsTr(root.model.message)
        opacity: 0
        type: root.model.type
        visible: opacity > 0
        y: -height

        onTapped: root.model.hide()

        states: State {
            name: "shown"
            when: root.model.shown

            PropertyChanges {
                toast.opacity: 1
                toast.y: 16
            }
        }

        transitions: [
            Transition {
                to: "shown"

                SpringNumber {
                    damping: 0.8
                    properties: "y,opacity"
                    response: 0.4
                }
            },
            Transition {
                from: "shown"

                EaseOut {
                    properties: "y,opacity"
                }
            }
        ]
    }
}
