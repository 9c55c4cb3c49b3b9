import QtQuick
import QtQuick.Layouts
import Kelmoth.Components

/// A row of choices of equal width; the arrow keys move the focus within it.
RowLayout {
    id: root

    Keys.onLeftPressed: FocusGuide.move(root, -1)
    Keys.onRightPressed: FocusGuide.move(root, 1)

    spacing: 6
}
