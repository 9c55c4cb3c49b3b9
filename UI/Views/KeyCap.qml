import QtQuick
import QtQuick.Layouts
import Kelmoth.Components

/// A small button that bears what it stands for, like a key of a keyboard.
PressArea {
    id: root

    property string label ///< of which the first letter is shown large
    property string spoken ///< its name, where the label is no word; empty: as it is shown
    readonly property string shownLabel: label.charAt(0).toUpperCase() + label.slice(1)

    Layout.fillWidth: true
    Layout.preferredWidth: 1
    focusRadius: 4
    implicitHeight: 22
    text: spoken || shownLabel

    Surface {
        anchors.fill: parent
        borderColor: Theme.outline
        borderWidth: 1
        color: Theme.controlBackground
        radius: 4
        shadowColor: "#1e000000"
        shadowRadius: 1
        shadowY: 1
    }

    PressLook {
        radius: 4
        target: root
    }

    AppText {
        anchors.centerIn: parent
        color: Theme.label
        fontSizeMode: Text.HorizontalFit
        horizontalAlignment: Text.AlignHCenter
        minimumPixelSize: 8
        size: 10
        text: root.shownLabel
        weight: Font.Medium
        width: parent.width - 4
    }
}
