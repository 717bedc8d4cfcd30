import QtQuick
import QtQuick.Window
import Ombrix.Views

/// A dial in a column of its own, with its name below it.
Item {
    id: column

    /// The state that the dial follows, and tells what the player does.
    required property DialState dialState

    implicitWidth: dial.implicitWidth
    implicitHeight: label.y + label.implicitHeight
    opacity: enabled ? 1 : 0.4

    Rectangle {
        anchors.fill: dial
        anchors.margins: 1
        visible: dial.focusVisible
        radius: width / 2
        color: "transparent"
        border.width: 2
        border.color: Theme.amber
    }
    ParameterDial {
        id: dial

        anchors.horizontalCenter: parent.horizontalCenter
        dialState: column.dialState
        bubbleContainer: Window.contentItem
        menuOffered: column.dialState !== null && column.dialState.learnable
        onMenuAsked: {
            learning.byKeys = focusVisible
            learning.active = true
        }
        onValueChanged: if (learning.item) learning.item.leave()

        Accessible.role: Accessible.Slider
        Accessible.name: label.text
        Accessible.description: badge.controllers === "" ? spokenText : spokenText + ", " + badge.controllers
        Accessible.focusable: true
        Accessible.onIncreaseAction: accessibilityIncrement()
        Accessible.onDecreaseAction: accessibilityDecrement()
        Accessible.onPressAction: doubleTapped()
    }
    LearnBadge {
        id: badge
        anchors { horizontalCenter: dial.horizontalCenter; top: dial.verticalCenter; topMargin: 2 * Theme.grid }
        dialState: column.dialState
        objectName: "learnBadge"
    }
    Loader {
        id: learning
        property bool byKeys: false

        // What was touched elsewhere may have taken it already.
        function giveFocusBack() {
            const now = dial.Window.activeFocusItem
            if (!now || now === dial.Window.contentItem)
                dial.forceActiveFocus(byKeys ? Qt.PopupFocusReason : Qt.MouseFocusReason)
        }

        active: false
        sourceComponent: LearnPopover {
            dialState: column.dialState
            target: dial
            onAboutToHide: learning.giveFocusBack()
            onClosed: {
                learning.giveFocusBack()
                learning.active = false
            }
        }
    }
    Text {
        id: label

        // Below the lowest lamps, in the gap of their ring.
        anchors { top: dial.bottom; topMargin: -Theme.grid - 2 }
        width: parent.width
        text: column.dialState ? column.dialState.name : ""
        color: dial.pressed || dial.focusVisible ? Theme.cream : Theme.creamDim
        font.family: Theme.family
        font.pixelSize: Theme.labelSize
        horizontalAlignment: Text.AlignHCenter
        elide: Text.ElideRight
    }
}
