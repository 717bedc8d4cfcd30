import QtQuick
import Ombrix.Views

/// The sound in use, large, and what can be done to it. The keys stay free, so that an edit is
/// heard at once.
Item {
    id: root

    required property WaveEditor content
    required property OmbrixViewController controller
    readonly property string heading: controller.wave.name === "" ? qsTr("Edit Sound") : qsTr("Edit %1").arg(controller.wave.name)
    signal done

    function takeFocus() {
        doneButton.forceActiveFocus(Qt.PopupFocusReason)
    }
    function join() {
        if (dialog.item)
            dialog.item.open()
        else
            dialog.setSource("JoinDialog.qml", { editor: root.content })
    }

    Shortcut { sequences: [StandardKey.Undo]; onActivated: root.content.undo() }
    Shortcut { sequences: [StandardKey.Redo]; onActivated: root.content.redo() }
    Shortcut { sequences: [StandardKey.SelectAll]; onActivated: root.controller.selection.selectAll() }
    Shortcut { sequence: "Del"; onActivated: root.content.cut() }

    Rectangle {
        id: frame
        anchors { left: parent.left; right: parent.right; top: parent.top; bottom: tools.top; margins: 2 * Theme.grid; bottomMargin: Theme.grid }
        border { color: Theme.line; width: Theme.hairline }
        clip: true
        color: Theme.ground
        radius: Theme.halfGrid

        SoundView {
            anchors { fill: parent; margins: Theme.hairline }
            controller: root.controller
            names: "edit"
        }
    }
    EditNotice {
        anchors.centerIn: frame
        editor: root.content
        visible: root.content.busy
        width: Math.min(48 * Theme.grid, frame.width - 4 * Theme.grid)
    }
    LoadingNotice {
        anchors.centerIn: frame
        visible: root.controller.wave.loading
        wave: root.controller.wave
        width: Math.min(48 * Theme.grid, frame.width - 4 * Theme.grid)
    }
    // The one of the screen lies below.
    NoticeBar {
        anchors { horizontalCenter: parent.horizontalCenter; top: frame.top; topMargin: Theme.grid }
        text: root.controller.notices.text
        width: Math.min(implicitWidth, frame.width - 2 * Theme.grid)
        onClosed: root.controller.notices.close()
    }
    EditTools {
        id: tools
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 2 * Theme.grid; bottomMargin: Theme.grid }
        controller: root.controller
        onJoinWanted: root.join()
    }

    // In the heading's line.
    Words {
        anchors { left: parent.left; leftMargin: 2 * Theme.grid }
        color: Theme.creamDim
        font.pixelSize: Theme.labelSize
        height: Theme.touchTarget
        objectName: "selectionTimes"
        text: root.content.selectionText
        width: root.width * 0.38
        y: -height
    }
    Words {
        anchors { right: doneButton.left; rightMargin: 2 * Theme.grid }
        color: Theme.creamDim
        font.pixelSize: Theme.labelSize
        height: Theme.touchTarget
        horizontalAlignment: Text.AlignRight
        text: qsTr("Length %1").arg(root.content.lengthText)
        width: root.width * 0.2
        y: -height
    }
    PushButton {
        id: doneButton
        objectName: "editDoneButton"
        anchors { right: parent.right; rightMargin: Theme.halfGrid }
        primary: true
        text: qsTr("Done")
        width: 9 * Theme.grid
        y: -height
        onClicked: root.done()
    }

    // Made when it is first wanted: it takes longer to load than the rest.
    Loader {
        id: dialog
        onLoaded: item.open()
    }
}
