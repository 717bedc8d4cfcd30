import QtQuick
import Ombrix.Views

/// The screen after a performance was recorded: where it can be sent.
Item {
    id: root

    required property PerformanceCompleteController content
    readonly property string heading: content.title

    implicitWidth: content.width - 2 * Theme.hairline
    implicitHeight: table.implicitHeight + 2 * Theme.grid

    function takeFocus() {
        rows.itemAt(0).forceActiveFocus(Qt.PopupFocusReason)
    }

    Column {
        id: table
        width: parent.width
        y: Theme.grid

        Words {
            color: Theme.creamDim
            font { bold: true; pixelSize: Theme.labelSize }
            height: 4 * Theme.grid
            leftPadding: 2 * Theme.grid
            text: root.content.header
            width: parent.width
        }
        Repeater {
            id: rows
            model: root.content.rows

            ListRow {
                required property int index
                required property string modelData

                objectName: "sendRow" + index
                text: modelData
                width: table.width
                onClicked: root.content.choose(index)

                KeyNavigation.down: rows.itemAt(index + 1)
            }
        }
        Words {
            color: Theme.creamDim
            font.pixelSize: Theme.labelSize
            maximumLineCount: 8
            padding: 2 * Theme.grid
            text: root.content.footer
            width: parent.width
            wrapMode: Text.WordWrap
        }
    }
}
