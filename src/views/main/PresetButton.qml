import QtQuick
import Ombrix.Views

/// The name of the preset in use, and whether it was changed since; opens the list.
PushButton {
    id: root

    required property OmbrixViewController controller
    readonly property PresetBar bar: controller.presetBar

    objectName: "presetButton"
    leftPadding: Theme.grid + Theme.halfGrid
    rightPadding: Theme.grid
    spoken: bar.modificationNotice ? qsTr("Preset: %1, changed").arg(bar.title)
                                   : qsTr("Preset: %1").arg(bar.title)
    onClicked: controller.toolbarPresetClicked()

    contentItem: Item {
        Words {
            anchors.verticalCenter: parent.verticalCenter
            font.bold: true
            horizontalAlignment: Text.AlignLeft
            objectName: "presetTitle"
            text: root.bar.title
            width: Math.min(implicitWidth, parent.width - arrow.width - notice.width - Theme.halfGrid)

            Rectangle {
                id: notice
                anchors { left: parent.right; leftMargin: Theme.grid; verticalCenter: parent.verticalCenter }
                color: Theme.amber
                height: Theme.grid
                objectName: "modificationNotice"
                radius: Theme.halfGrid
                visible: root.bar.modificationNotice
                width: Theme.grid
            }
        }
        Picture {
            id: arrow
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            name: "down.png"
            opacity: 0.7
        }
    }
}
