import QtQuick
import QtQuick.Layouts
import Kelmoth.Components

/// Tiles of equal width in columns; the arrow keys move the focus among them.
GridLayout {
    id: root

    property int tiles: 0

    Keys.onDownPressed: FocusGuide.move(root, root.columns)
    Keys.onLeftPressed: FocusGuide.move(root, -1)
    Keys.onRightPressed: FocusGuide.move(root, 1)
    Keys.onUpPressed: FocusGuide.move(root, -root.columns)

    columnSpacing: 4
    rowSpacing: 4

    // The layout forgets a tile that goes only when it is polished, which is too late for one that is moved before:
    // it would still ask the tile, which is destroyed by then.
    onChildrenChanged: if (tiles > (tiles = children.length)) ensurePolished()
}
