import QtQuick
import Kelmoth.Components

/// A line of text of the system's font; cut with dots where there is no room.
Text {
    property int size: 13
    property int weight: Font.Normal

    Accessible.name: text
    Accessible.role: Accessible.StaticText

    color: Theme.label
    elide: Text.ElideRight
    font.pixelSize: size
    font.weight: weight
    padding: 0
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter
}
