import QtQuick
import QtQuick.Templates as T
import Ombrix.Views

/// An alert over everything. Nothing else is touched until it is answered; Escape cancels it.
T.Popup {
    id: root

    required property AlertController alert
    readonly property int margin: 2 * Theme.grid

    parent: T.Overlay.overlay
    x: (parent.width - width * scale) / 2
    y: (parent.height - height * scale) / 2
    z: 1
    scale: Theme.sceneScale
    transformOrigin: T.Popup.TopLeft
    implicitWidth: Math.min(48 * Theme.grid, parent.width / scale - 2 * margin)
    implicitHeight: contentHeight + 2 * padding
    padding: 3 * Theme.grid
    closePolicy: T.Popup.NoAutoClose
    focus: true
    modal: alert.shown  // a closed one would keep shortcuts from everything else
    visible: alert.shown
    onVisibleChanged: if (visible) cancel.forceActiveFocus(Qt.PopupFocusReason)

    enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.popoverTime } }
    exit: Transition { NumberAnimation { property: "opacity"; to: 0; duration: Theme.popoverTime } }

    T.Overlay.modal: Rectangle {
        color: Theme.shadow
        Behavior on opacity { NumberAnimation { duration: Theme.popoverTime } }
    }

    background: PopoverFace {}

    contentItem: Column {
        spacing: root.margin

        Accessible.role: Accessible.AlertMessage
        Accessible.name: root.alert.title + ". " + root.alert.message
        Keys.onEscapePressed: root.alert.dismiss()

        Words {
            font { bold: true; pixelSize: Theme.titleSize }
            horizontalAlignment: Text.AlignHCenter
            text: root.alert.title
            width: parent.width
        }
        Words {
            horizontalAlignment: Text.AlignHCenter
            maximumLineCount: 8
            text: root.alert.message
            width: parent.width
            wrapMode: Text.Wrap
        }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: root.margin

            PushButton {
                id: cancel
                objectName: "alertCancelButton"
                text: root.alert.cancel
                width: Math.max(implicitWidth, 16 * Theme.grid)
                onClicked: root.alert.clickedButtonAtIndex(0)
            }
            PushButton {
                objectName: "alertOtherButton"
                destructive: root.alert.destructive
                text: root.alert.other
                visible: text !== ""
                width: Math.max(implicitWidth, 16 * Theme.grid)
                onClicked: root.alert.clickedButtonAtIndex(1)
            }
        }
    }
}
