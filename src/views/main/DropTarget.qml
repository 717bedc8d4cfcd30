import QtQuick
import Ombrix.Views

/// Files that are dropped here are opened, and Ctrl+V opens what lies on the clipboard. Fills the
/// window; takes no touch.
DropArea {
    id: root

    required property Sharing sharing

    onEntered: drag => drag.accepted = drag.hasUrls
    onDropped: drop => {
        root.sharing.drop(drop.urls)
        drop.accept(Qt.CopyAction)
    }

    Shortcut {
        sequences: [StandardKey.Paste]
        onActivated: root.sharing.paste()
    }
    Rectangle {
        anchors { fill: parent; margins: Theme.halfGrid }
        border { color: Theme.amber; width: Theme.focusLine }
        color: Qt.alpha(Theme.amber, 0.08)
        radius: Theme.panelRadius
        visible: root.containsDrag
    }
}
