import QtQuick
import Ombrix.Views

/// Rows that belong together, on a face of their own, under a heading and above a footer.
Column {
    id: root

    property string heading: ""
    property string footer: ""
    default property alias rows: column.data

    spacing: Theme.halfGrid

    Accessible.role: Accessible.Grouping
    Accessible.name: heading

    Words {
        color: Theme.creamDim
        font { bold: true; pixelSize: Theme.labelSize }
        leftPadding: 2 * Theme.grid
        text: root.heading
        visible: text !== ""
        width: parent.width
    }
    Rectangle {
        border { color: Theme.line; width: Theme.hairline }
        color: Theme.panel
        height: column.height + 2 * column.y
        radius: Theme.panelRadius
        width: parent.width

        Column {
            id: column
            width: parent.width - 2 * x
            x: Theme.hairline
            y: Theme.halfGrid
        }
        // The last row needs no line to the next one.
        Rectangle {
            anchors { left: column.left; right: column.right; bottom: column.bottom }
            color: Theme.panel
            height: Theme.hairline
        }
    }
    SettingsNote {
        text: root.footer
        width: parent.width
    }
}
