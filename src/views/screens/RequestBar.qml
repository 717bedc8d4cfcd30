import QtQuick
import Ombrix.Views

/// Somebody asks to play over the network. Over everything that is open, and in nobody's way: what
/// is played goes on. It goes with the last who asks.
Rectangle {
    id: root

    required property NetworkSetup network

    border { color: Theme.amber; width: Theme.hairline }
    color: Theme.panelRaised
    implicitHeight: Math.max(6 * Theme.grid, words.implicitHeight + 2 * Theme.grid)
    implicitWidth: words.implicitWidth + buttons.width + 7 * Theme.grid
    radius: Theme.panelRadius
    visible: network.question !== ""

    Accessible.role: Accessible.AlertMessage
    Accessible.name: network.question

    // Beside the buttons it is no way to what lies below.
    MouseArea { anchors.fill: parent }
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
        anchors { left: lamp.right; leftMargin: Theme.grid + Theme.halfGrid; right: buttons.left; rightMargin: Theme.grid; verticalCenter: parent.verticalCenter }
        maximumLineCount: 2
        text: root.network.question
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
    Row {
        id: buttons
        anchors { right: parent.right; rightMargin: Theme.grid; verticalCenter: parent.verticalCenter }
        spacing: Theme.grid

        PushButton {
            objectName: "requestRefuseButton"
            text: qsTr("Refuse")
            onClicked: root.network.answerFirst(false)
        }
        PushButton {
            objectName: "requestAllowButton"
            text: qsTr("Allow")
            onClicked: root.network.answerFirst(true)
        }
    }
}
