import QtQuick
import Ombrix.Views

/// A row that says what is chosen, and opens to the rows that can be.
Column {
    id: root

    property string title: ""
    /// AudioOptions.
    property var options: []
    property bool busy: false
    property bool open: false
    signal asked(string name)

    readonly property var current: options.find(option => option.chosen)

    ListRow {
        objectName: root.objectName + "Row"
        text: root.title
        note: root.busy && root.open ? qsTr("looking…") : root.current ? root.current.title : ""
        rightPadding: 5 * Theme.grid
        width: parent.width
        onClicked: root.open = !root.open

        Accessible.description: root.open ? qsTr("open") : qsTr("closed")

        Picture {
            anchors { right: parent.right; rightMargin: Theme.halfGrid; verticalCenter: parent.verticalCenter }
            name: "down.png"
            rotation: root.open ? 180 : 0
            scale: 0.5
        }
    }
    // Counted, not listed: rows stay, with the focus in one of them, while what they say changes.
    Repeater {
        model: root.open ? root.options.length : 0

        ListRow {
            required property int index
            readonly property var option: root.options[index]
            objectName: root.objectName + index
            chosen: option !== undefined && option.chosen
            leftPadding: 4 * Theme.grid
            note: option !== undefined ? option.detail : ""
            text: option !== undefined ? option.title : ""
            width: root.width
            onClicked: root.asked(option.name)
        }
    }
}
