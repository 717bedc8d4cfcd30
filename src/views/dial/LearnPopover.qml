import QtQuick
import Ombrix.Views

/// What MIDI controllers can do for a dial: one is learned, or forgotten. Open from the start; goes
/// when it has been done, and stops waiting when it goes.
Popover {
    id: root

    required property DialState dialState
    /// What it says stays while it fades.
    property bool waited: false
    property bool leaving: false

    function leave() {
        if (visible && !leaving) {
            leaving = true
            close()
        }
    }

    heading: dialState.name
    visible: true
    onOpened: if (!waited) learnRow.forceActiveFocus(Qt.PopupFocusReason)
    onDismissed: leave()
    onAboutToHide: {
        leaving = true
        if (dialState.learning)
            dialState.stopLearning()
    }

    Connections {
        target: root.dialState
        function onLearningChanged() {
            if (!root.dialState.learnable || (root.waited && !root.dialState.learning))
                root.leave()
            if (!root.leaving)
                root.waited = root.dialState.learning
        }
    }

    contentItem: Column {
        Words {
            bottomPadding: Theme.grid
            leftPadding: 2 * Theme.grid
            objectName: "learnPrompt"
            rightPadding: 2 * Theme.grid
            text: qsTr("Move a controller…")
            topPadding: 2 * Theme.grid
            visible: root.waited
            width: parent.width
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
        ListRow {
            id: learnRow
            objectName: "learnRow"
            text: qsTr("Learn")
            note: qsTr("a MIDI controller")
            visible: !root.waited
            width: parent.width
            onClicked: {
                root.dialState.learn()
                cancelRow.forceActiveFocus(Qt.OtherFocusReason)
            }
        }
        ListRow {
            destructive: true
            objectName: "forgetRow"
            text: qsTr("Forget %1").arg(root.dialState.controllers)
            visible: !root.waited && root.dialState.controllers !== ""
            width: parent.width
            onClicked: {
                root.dialState.forget()
                root.leave()
            }
        }
        ListRow {
            id: cancelRow
            objectName: "learnCancelRow"
            text: qsTr("Cancel")
            visible: root.waited
            width: parent.width
            onClicked: root.leave()
        }
    }
}
