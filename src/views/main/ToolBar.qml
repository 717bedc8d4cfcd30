import QtQuick
import Ombrix.Views

/// Presets at the left, what the output does in the middle, everything else at the right.
Item {
    id: root

    required property OmbrixViewController controller
    /// Too narrow for the texts of buttons whose pictures say as much.
    readonly property bool compact: width < 1240 * Theme.textScale

    Row {
        id: left
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.halfGrid
        x: Theme.grid

        PushButton {
            objectName: "previousPresetButton"
            picture: "previous.png"
            plain: true
            spoken: qsTr("Previous preset")
            onClicked: root.controller.presetBar.previous()
        }
        PresetButton {
            controller: root.controller
            width: Math.min(320, root.width * (root.compact ? 0.24 : 0.2))
        }
        PushButton {
            objectName: "nextPresetButton"
            picture: "next.png"
            plain: true
            spoken: qsTr("Next preset")
            onClicked: root.controller.presetBar.next()
        }
        ToolButton {
            compact: root.compact
            objectName: "saveButton"
            picture: "save.png"
            spoken: qsTr("Save the preset")
            title: qsTr("Save")
            onClicked: root.controller.toolbarSaveClicked()
        }
        ToolButton {
            compact: root.compact
            enabled: root.controller.presetBar.canDelete
            objectName: "deleteButton"
            picture: "delete.png"
            spoken: qsTr("Delete the preset")
            title: qsTr("Delete")
            onClicked: root.controller.toolbarDeleteClicked()
        }
    }
    OutputMeter {
        anchors { left: left.right; right: right.left; leftMargin: 2 * Theme.grid; rightMargin: 2 * Theme.grid; verticalCenter: parent.verticalCenter }
        controller: root.controller
    }
    Row {
        id: right
        anchors { right: parent.right; rightMargin: Theme.grid; verticalCenter: parent.verticalCenter }
        spacing: Theme.halfGrid

        Words {
            anchors.verticalCenter: parent.verticalCenter
            color: root.controller.performance.diskNearlyFull ? Theme.alert : Theme.creamDim
            font.pixelSize: Theme.labelSize
            text: root.controller.performance.remaining
            visible: text !== ""
        }
        RecordButton { controller: root.controller }
        ToolButton {
            compact: root.compact
            objectName: "shareButton"
            picture: "share.png"
            title: qsTr("Share")
            onClicked: root.controller.toolbarShareClicked()
        }
        ToolButton {
            compact: root.compact
            objectName: "settingsButton"
            picture: "settings.png"
            title: qsTr("Settings")
            onClicked: root.controller.toolbarSettingsClicked()
        }
        ToolButton {
            compact: true
            objectName: "helpButton"
            picture: "help.png"
            title: qsTr("Help")
            onClicked: root.controller.helpClicked()
        }
    }
}
