import QtQuick
import Kelmoth.Components

/// Shows, at the side of a Flickable, which part of it is in sight; nothing while all of it is.
Rectangle {
    id: root

    required property Flickable flickable
    readonly property real part: flickable.visibleArea.heightRatio

    color: Theme.tertiaryLabel
    height: Math.min(flickable.height, Math.max(20, part * flickable.height))
    opacity: flickable.moving ? 0.8 : 0.35
    radius: width / 2
    visible: part < 1
    width: 4
    y: flickable.y + flickable.visibleArea.yPosition / Math.max(0.001, 1 - part) * (flickable.height - height)
}
