pragma ComponentBehavior: Bound

import QtQuick
import Kelmoth.Components

/// Says over a page why it cannot be used.
Item {
    id: root

    required property var model ///< ContentModel

    opacity: model.isPageUsable ? 0 : 1
    visible: opacity > 0

    Behavior on opacity {
        EaseInOut {
            time: 180
        }
    }

    Surface {
        anchors.fill: parent
        color: Theme.alpha(Theme.windowBackground, 0.82)
        radius: 12
    }

    Column {
        anchors.left: parent.left
        anchors.margins: 20
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 12

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            color: Theme[root.model.noticeColorName]
            name: root.model.noticeIcon
            size: 40
        }

        AppText {
            Accessible.role: Accessible.Heading
            horizontalAlignment: Text.AlignHCenter
            size: 16
            text: qsTr(root.model.noticeTitle)
            weight: Font.DemiBold
            width: parent.width
            wrapMode: Text.Wrap
        }

        Repeater {
            model: root.model.noticeLines

            AppText {
                required size
                required property string colorName
                required property real gap
                required property string label
                required property bool medium

                color: Theme.readable(Theme[colorName])
                horizontalAlignment: Text.AlignHCenter
                text: qsTr(label)
                topPadding: gap
                weight: medium ? Font.Medium : Font.Normal
                width: parent.width
                wrapMode: Text.Wrap
            }
        }
    }
}
