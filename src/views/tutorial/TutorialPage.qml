import QtQuick
import QtQuick.Controls.Basic
import Ombrix.Views

/// The tutorial's page, in a popover that points at the item of the anchor's name. The rest of the
/// window stays usable: what a page speaks of can be tried at once.
Popup {
    id: popup

    required property TutorialManager manager

    width: contentWidth
    height: contentHeight
    padding: 0
    scale: Theme.sceneScale
    transformOrigin: Popup.TopLeft
    x: Math.round(anchor.frame.x)
    y: Math.round(anchor.frame.y)
    focus: true
    closePolicy: Popup.NoAutoClose  // the manager decides

    enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.popoverTime } }
    exit: Transition { NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.popoverTime } }

    function follow() {
        if (!manager.popover)
            return close()
        anchor.name = manager.anchorName
        if (!anchor.found)
            return manager.anchorNotFound()
        open()
        contentItem.forceActiveFocus()
    }
    Component.onCompleted: follow()
    Connections {
        target: popup.manager
        function onChanged() { popup.follow() }
    }
    PopoverAnchor {
        id: anchor
        stage: popup.parent
        size: Qt.size(popup.contentWidth * popup.scale, popup.contentHeight * popup.scale)
    }

    background: Item {
        Rectangle {
            anchors.fill: parent
            radius: Theme.panelRadius
            color: "black"
            border { width: Theme.hairline; color: Theme.amberDim }
        }
        Rectangle {  // the arrow
            x: Math.max(0, Math.min(popup.width, (anchor.tip.x - anchor.frame.x) / popup.scale)) - width / 2
            y: Math.max(0, Math.min(popup.height, (anchor.tip.y - anchor.frame.y) / popup.scale)) - height / 2
            width: 14
            height: width
            rotation: 45
            color: "black"
            border { width: Theme.hairline; color: Theme.amberDim }
        }
        Rectangle {  // covers the arrow's inner half
            anchors { fill: parent; margins: Theme.hairline }
            radius: Theme.panelRadius
            color: "black"
        }
    }

    contentItem: TutorialContent {
        page: popup.manager.page
        onNextAsked: popup.manager.next()
        onHideAsked: popup.manager.hide()
    }
}
