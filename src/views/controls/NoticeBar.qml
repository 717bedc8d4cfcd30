import QtQuick
import Ombrix.Views

/// A calm line that says what happened and what to do. It goes when it is closed.
Rectangle {
    id: root

    property string text: ""
    signal closed

    border { color: Theme.amberDim; width: Theme.hairline }
    color: Theme.panelRaised
    implicitHeight: Math.max(Theme.touchTarget, words.implicitHeight + 2 * Theme.grid)
    implicitWidth: Math.max(0, words.implicitWidth) + lamp.width + close.width + 4 * Theme.grid
    opacity: text === "" ? 0 : 1
    radius: Theme.panelRadius
    visible: opacity > 0

    Accessible.role: Accessible.AlertMessage
    Accessible.name: text
    Accessible.ignored: text === ""

    Behavior on opacity { NumberAnimation { duration: Theme.controlTime } }
    // The words stay while it fades.
    onTextChanged: if (text !== "") words.text = text

    Rectangle {
        id: lamp
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.amber
        height: Theme.grid
        radius: Theme.halfGrid
        width: Theme.grid
        x: 2 * Theme.grid
    }
    Words {
        id: words
        anchors { left: lamp.right; leftMargin: Theme.grid + Theme.halfGrid; right: close.left; verticalCenter: parent.verticalCenter }
        maximumLineCount: 2
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
    PushButton {
        id: close
        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        objectName: "noticeCloseButton"
        picture: "close.png"
        plain: true
        spoken: qsTr("Close the notice")
        onClicked: root.closed()
    }
}
