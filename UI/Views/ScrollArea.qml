import QtQuick
import Kelmoth.Components
import Kelmoth.Views

/// A page's column of things: in the middle where there is room, else it scrolls. A page that is left is found
/// at its top again.
Item {
    id: root

    property real spacing: 10
    property bool centered: true ///< where there is room; else it begins at the top
    default property alias content: column.data

    /// Scrolls as far as it takes for `item` to be seen.
    function reveal(item: Item): void {
        revealer.reveal(item);
    }

    onVisibleChanged: if (!visible) viewport.contentY = 0

    Flickable {
        id: viewport

        anchors.fill: parent
        anchors.leftMargin: -16 // so that what glows at the sides is not cut
        anchors.rightMargin: -16
        boundsBehavior: Flickable.StopAtBounds
        clip: interactive
        contentHeight: Math.max(height, column.height)
        contentWidth: width
        interactive: column.height > height

        Column {
            id: column

            spacing: root.spacing
            width: root.width
            x: 16
            y: root.centered ? Math.max(0, Math.round((root.height - height) / 2)) : 0
        }

        Revealer {
            id: revealer

            active: FocusGuide.visible
            flickable: viewport
        }
    }

    Rectangle {
        anchors.left: viewport.left
        anchors.right: viewport.right
        anchors.top: viewport.top
        height: 14
        visible: viewport.interactive && !viewport.atYBeginning

        gradient: Gradient {
            GradientStop {
                color: Theme.windowBackground
                position: 0
            }

            GradientStop {
                color: Theme.alpha(Theme.windowBackground, 0)
                position: 1
            }
        }
    }

    Rectangle {
        anchors.bottom: viewport.bottom
        anchors.left: viewport.left
        anchors.right: viewport.right
        height: 14
        visible: viewport.interactive && !viewport.atYEnd

        gradient: Gradient {
            GradientStop {
                color: Theme.alpha(Theme.windowBackground, 0)
                position: 0
            }

            GradientStop {
                color: Theme.windowBackground
                position: 1
            }
        }
    }

    ScrollHint {
        flickable: viewport
        x: root.width + 7
    }
}
