pragma ComponentBehavior: Bound

import QtQuick
import Kelmoth.Components
import Kelmoth.Views

/// Says over a page why it cannot be used. It comes and goes with the page, and at once with what the page can do.
Item {
    id: root

    required property ContentModel model
    property bool waits: false ///< until a page looks as if it could not be used
    property real presence: model.selectedTab === 3 ? 0 : 1 ///< of a page that it can lie over

    opacity: model.isDeviceSupported || waits ? 0 : presence
    visible: opacity > 0

    Behavior on presence {
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
            color: Theme.readableSymbol(Theme[root.model.noticeColorName])
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
