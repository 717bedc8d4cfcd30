import QtQuick
import QtQuick.Window
import Ombrix.Views

/// The popover of one tag. While that tag is presented it holds the screen, which is made anew each
/// time and stays while it fades. The keyboard's focus goes in, stays inside, and comes back.
Popover {
    id: root

    required property OmbrixViewController controller
    required property string tag
    /// objectName of the control that it points at, anywhere in the window.
    property string anchor: ""
    /// Makes an item with `required property content`, the controller of what is shown, a
    /// `heading`, an implicit size, and `takeFocus()`.
    required property Component screen

    readonly property Presentation presentation: controller.presentation
    readonly property bool presented: presentation.tag === tag
    readonly property QtObject content: presented ? presentation.content : null
    property Item shown: null
    property Item focusedBefore: null

    function itemNamed(name, below) {
        for (let i = 0; i < below.children.length; ++i) {
            const item = below.children[i]
            const found = !item.visible ? null : item.objectName === name ? item : itemNamed(name, item)
            if (found)
                return found
        }
        return null
    }

    function show() {
        const scene = parent.Window.window
        if (!visible)
            focusedBefore = scene.activeFocusItem
        target = anchor === "" ? null : itemNamed(anchor, scene.contentItem)
        clear()
        shown = screen.createObject(place, { content: content })
        shown.anchors.fill = place
        open()
        shown.takeFocus()
    }

    function clear() {
        if (shown)
            shown.destroy()
        shown = null
    }

    // What was touched elsewhere may have taken it already.
    function giveFocusBack() {
        const scene = parent.Window.window
        const now = scene.activeFocusItem
        if (focusedBefore && focusedBefore.visible && (!now || now === scene.contentItem))
            focusedBefore.forceActiveFocus(Qt.PopupFocusReason)
    }

    heading: shown ? shown.heading : ""
    onContentChanged: content ? show() : close()
    onDismissed: if (presented && !controller.alert.shown) presentation.dismiss()
    onAboutToHide: giveFocusBack()
    onClosed: {
        giveFocusBack()
        clear()
    }

    contentItem: Item {
        implicitHeight: root.shown ? root.shown.implicitHeight : 0
        implicitWidth: root.shown ? root.shown.implicitWidth : 0

        // Behind the last control comes the first one.
        Item {
            id: before
            activeFocusOnTab: true
            onActiveFocusChanged: if (activeFocus) after.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
        }
        Item {
            id: place
            anchors.fill: parent
        }
        Item {
            id: after
            activeFocusOnTab: true
            onActiveFocusChanged: if (activeFocus) before.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
        }
    }
}
