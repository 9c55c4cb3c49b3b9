import QtQuick
import Kelmoth.Components
import Kelmoth.Views

/// Lays a toast over the panel's upper edge: it springs in from above and fades out as it leaves.
Item {
    id: root

    required property ToastModel model

    ToastView {
        id: toast

        anchors.horizontalCenter: parent.horizontalCenter
        enabled: root.model.shown
        height: implicitHeight
        message: qsTr(root.model.message)
        opacity: 0
        type: root.model.type
        visible: opacity > 0
        width: implicitWidth
        y: -height

        onTapped: root.model.hide()

        Behavior on height {
            enabled: toast.visible

            SpringNumber {
                damping: 0.8
                response: 0.4
            }
        }

        Behavior on width {
            enabled: toast.visible

            SpringNumber {
                damping: 0.8
                response: 0.4
            }
        }

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
