import QtQuick
import Kelmoth.Components
import Kelmoth.Views

/// A bar in the colour of the light, with its glow. What it shows changes at once, or fades over while `motion`
/// says how.
Item {
    id: root

    enum Motion {
        None,
        Soft,
        Springy
    }

    required property RGBTabModel model
    property int motion: LightPreview.None
    property var before ///< a look: opaque `fill` and `glow`
    property var after
    property real turn: 1 ///< from the one to the other
    readonly property var look: ({
            fill: Qt.tint(Theme.windowBackground, Theme.alpha(model.isOff ? Theme.gray : model.currentColor, model.previewOpacity)),
            glow: Theme.alpha(model.currentColor, model.isOff ? 0 : 0.6)
        })

    component Glow: Surface {
        anchors.fill: parent
        radius: 8
        shadowRadius: 4
    }

    function change(): void {
        softly.stop();
        onSpring.stop();
        before = turn < 0.5 ? before : after;
        after = look;
        turn = 1;
        if (motion !== LightPreview.None)
            (motion === LightPreview.Soft ? softly : onSpring).start();
    }

    implicitHeight: 32

    onLookChanged: change()

    EaseInOut {
        id: softly

        from: 0
        property: "turn"
        target: root
        time: 180
        to: 1
    }

    SpringNumber {
        id: onSpring

        from: 0
        property: "turn"
        target: root
        to: 1
    }

    Glow {
        opacity: 1 - root.turn
        shadowColor: root.before?.glow ?? "transparent"
        visible: opacity > 0
    }

    Glow {
        opacity: root.turn
        shadowColor: root.after.glow
    }

    Surface { // opaque, so that what fades over it does not let the page through
        anchors.fill: parent
        color: root.before?.fill ?? "transparent"
        radius: 8
        visible: root.turn < 1
    }

    Surface {
        anchors.fill: parent
        color: root.after.fill
        opacity: root.turn
        radius: 8
    }
}
