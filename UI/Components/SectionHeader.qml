import QtQuick
import Kelmoth.Components

/// The heading of a section: a symbol and a title, or a title alone, small and wide.
Item {
    id: root

    property string text
    property string icon

    Accessible.name: text
    Accessible.role: Accessible.Heading

    implicitHeight: Math.max(symbol.visible ? symbol.implicitHeight : 0, label.implicitHeight)
    implicitWidth: label.x + label.implicitWidth

    Symbol {
        id: symbol

        anchors.verticalCenter: parent.verticalCenter
        color: Theme.accent
        name: root.icon
        size: 12
        visible: root.icon !== ""
        width: 20
    }

    AppText {
        id: label

        Accessible.ignored: true
        anchors.verticalCenter: parent.verticalCenter
        color: symbol.visible ? Theme.label : Theme.secondaryLabel
        font.letterSpacing: symbol.visible ? 0 : 1
        size: symbol.visible ? 12 : 9
        text: root.text
        weight: Font.DemiBold
        width: root.width - x
        x: symbol.visible ? symbol.width + 4 : 0
    }
}
