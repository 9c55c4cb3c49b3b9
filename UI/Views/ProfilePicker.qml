pragma ComponentBehavior: Bound

import QtQuick
import Kelmoth.Components
import Kelmoth.Views

/// The profiles to pick from.
Column {
    id: root

    required property ButtonsTabModel model

    leftPadding: 4
    rightPadding: 4
    spacing: 6

    AppText {
        color: Theme.secondaryLabel
        size: 10
        text: qsTr("Select profile:")
        width: parent.width - 8
    }

    TileGrid {
        columns: 5
        width: parent.width - 8

        Repeater {
            model: root.model.profiles

            KeyCap {
                required property int index
                required property string modelData

                implicitHeight: 26
                label: modelData
                usable: root?.model.isEnabled ?? false // which can change while the picker goes

                onTriggered: root.model.pickProfile(index + 1)
            }
        }
    }
}
