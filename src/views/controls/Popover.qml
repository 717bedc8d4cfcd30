import QtQuick
import QtQuick.Templates as T
import Ombrix.Views

/// What lies over the screen, with an arrow to the control that it belongs to, or in the middle
/// where there is none. It asks to be dismissed; who shows one at a time closes it.
T.Popup {
    id: root

    /// The control that it belongs to; none: it stands in the middle, without an arrow.
    property Item target: null
    property string heading: ""
    /// It stands below its control wherever that is.
    property bool fromBelow: false
    /// False: what is touched elsewhere leaves it open.
    property bool closedElsewhere: true
    /// The player tapped elsewhere, or pressed Escape.
    signal dismissed

    readonly property int arrowSize: 2 * Theme.grid
    readonly property int edge: Theme.grid
    readonly property real room: parent ? parent.width : 0
    property rect targetFrame: Qt.rect(0, 0, 0, 0)
    readonly property bool below: fromBelow || targetFrame.y + targetFrame.height / 2 < (parent ? parent.height : 0) / 2
    /// The most that its contents can have, in points.
    readonly property real largestHeight: !parent ? 0
        : (target ? (below ? parent.height - targetFrame.y - targetFrame.height : targetFrame.y) - arrowSize
                  : parent.height) / scale - 2 * edge
    readonly property real arrowX: (targetFrame.x + targetFrame.width / 2 - x) / scale

    function isInside(point) {
        const frame = targetFrame
        const isOnTarget = target && point.x >= frame.x && point.x < frame.x + frame.width
                           && point.y >= frame.y && point.y < frame.y + frame.height
        return isOnTarget || (point.x >= x && point.x < x + width * scale
                              && point.y >= y && point.y < y + height * scale)
    }

    function place() {
        if (target && parent)
            targetFrame = target.mapToItem(parent, 0, 0, target.width, target.height)
    }

    parent: T.Overlay.overlay
    scale: Theme.sceneScale
    transformOrigin: T.Popup.TopLeft
    x: !parent ? 0 : !target ? (room - width * scale) / 2
       : Math.max(edge, Math.min(targetFrame.x + (targetFrame.width - width * scale) / 2, room - width * scale - edge))
    y: !parent ? 0 : !target ? (parent.height - height * scale) / 2
       : below ? targetFrame.y + targetFrame.height + arrowSize / 2
               : targetFrame.y - height * scale - arrowSize / 2
    padding: Theme.hairline
    topPadding: Theme.hairline + (heading === "" ? 0 : Theme.touchTarget)
    height: Math.min(implicitHeight, largestHeight)
    implicitWidth: Math.max(contentWidth, 30 * Theme.grid) + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding
    focus: true
    // A closed one would keep shortcuts from everything else.
    closePolicy: visible ? T.Popup.CloseOnEscape : T.Popup.NoAutoClose
    onAboutToShow: place()
    onTargetChanged: place()
    onAboutToHide: dismissed()

    Connections {
        target: root.opened ? root.parent : null
        function onWidthChanged() { Qt.callLater(root.place) }
        function onHeightChanged() { Qt.callLater(root.place) }
    }

    // A touch elsewhere dismisses it and reaches what lies there all the same: keys can be played. A
    // touch of its own control leaves it open.
    Item {
        anchors.fill: parent
        parent: root.parent
        visible: root.visible && root.closedElsewhere
        z: 2

        PointHandler {
            acceptedButtons: Qt.AllButtons
            onActiveChanged: if (active && !root.isInside(point.scenePosition)) root.dismissed()
        }
    }

    enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.popoverTime } }
    exit: Transition { NumberAnimation { property: "opacity"; to: 0; duration: Theme.popoverTime } }

    background: PopoverFace {
        arrowSize: root.target ? root.arrowSize : 0
        arrowX: root.arrowX
        below: root.below
        heading: root.heading
        headingHeight: root.topPadding
    }
}
