import QtQuick
import QtQuick.Layouts
import Kelmoth.Components

/// Tiles of equal width in columns; the arrow keys move the focus among them.
GridLayout {
    id: root

    Keys.onDownPressed: FocusGuide.move(root, root.columns)
    Keys.onLeftPressed: FocusGuide.move(root, -1)
    Keys.onRightPressed: FocusGuide.move(root, 1)
    Keys.onUpPressed: FocusGuide.move(root, -root.columns)

    columnSpacing: 4
    rowSpacing: 4
}
