import QtQuick
import Ombrix.Views

/// The selection over a wave view. While a handle is held the length of the selection is told
/// between the two edges.
WaveRangeView2 {
    id: range

    lineColour: Theme.amber
    shadeColour: Qt.alpha(Theme.ground, 0.65)

    component Focus: FocusLine {
        required property WaveRangeHandle handle
        anchors { margins: 0; leftMargin: Theme.halfGrid; rightMargin: Theme.halfGrid }
        parent: handle
        visible: handle.focusVisible && handle.inView
    }
    Focus { handle: range.startHandle }
    Focus { handle: range.stopHandle }

    Rectangle {
        readonly property real middle: range.selectedFrame.x + range.selectedFrame.width / 2
        color: Theme.amberDeep
        height: words.implicitHeight
        opacity: range.held ? 1 : 0
        radius: height / 2
        visible: opacity > 0
        width: words.implicitWidth + 2 * Theme.grid
        x: Math.max(0, Math.min(middle - width / 2, range.width - width))
        // Below the handles and their bubbles, which it would cover in a short selection.
        y: range.selectedFrame.height - height - 1

        Behavior on opacity { NumberAnimation { duration: Theme.controlTime } }

        Words {
            id: words
            anchors.centerIn: parent
            color: Theme.cream
            text: range.lengthText
        }
    }
}
