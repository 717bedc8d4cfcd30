import QtQuick
import Ombrix.Views

/// What can be done to the sound, as buttons in one row.
Row {
    id: root

    required property OmbrixViewController controller
    signal joinWanted

    readonly property WaveEditor editor: controller.editor
    readonly property int gap: 2 * Theme.grid
    /// Undo and redo say what they undo and redo, and take half as much again.
    readonly property real column: (width - 4 * gap) / 12

    EditButton {
        enabled: root.editor.canEdit
        objectName: "playEditButton"
        picture: root.controller.hearing.playing ? "halt.png" : "play.png"
        title: root.controller.hearing.playing ? qsTr("Stop") : qsTr("Play")
        width: root.column
        onClicked: root.editor.playOrStop()
    }
    Item { height: 1; width: root.gap }
    EditButton { enabled: root.editor.canCut; objectName: "cropButton"; picture: "crop.png"; title: qsTr("Crop"); width: root.column; onClicked: root.editor.crop() }
    EditButton { enabled: root.editor.canCut; objectName: "cutButton"; picture: "cut.png"; title: qsTr("Cut"); width: root.column; onClicked: root.editor.cut() }
    EditButton { enabled: root.editor.canEdit; objectName: "silenceButton"; picture: "silence.png"; title: qsTr("Silence"); width: root.column; onClicked: root.editor.silence() }
    Item { height: 1; width: root.gap }
    EditButton { enabled: root.editor.canEdit; objectName: "fadeInButton"; picture: "fade-in.png"; title: qsTr("Fade In"); width: root.column; onClicked: root.editor.fadeIn() }
    EditButton { enabled: root.editor.canEdit; objectName: "fadeOutButton"; picture: "fade-out.png"; title: qsTr("Fade Out"); width: root.column; onClicked: root.editor.fadeOut() }
    EditButton { enabled: root.editor.canEdit; objectName: "normaliseButton"; picture: "normalise.png"; title: qsTr("Normalise"); width: root.column; onClicked: root.editor.normalise() }
    EditButton { enabled: root.editor.canEdit; objectName: "reverseButton"; picture: "reverse.png"; title: qsTr("Reverse"); width: root.column; onClicked: root.editor.reverse() }
    Item { height: 1; width: root.gap }
    EditButton { enabled: root.editor.canJoin; objectName: "joinButton"; picture: "join.png"; title: qsTr("Join…"); width: root.column; onClicked: root.joinWanted() }
    Item { height: 1; width: root.gap }
    EditButton { enabled: root.editor.canUndo; objectName: "undoButton"; picture: "undo.png"; title: root.editor.undoText; width: 1.5 * root.column; onClicked: root.editor.undo() }
    EditButton { enabled: root.editor.canRedo; objectName: "redoButton"; picture: "redo.png"; title: root.editor.redoText; width: 1.5 * root.column; onClicked: root.editor.redo() }
}
