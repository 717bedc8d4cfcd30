import QtQuick
import Ombrix.Views

/// A line for the address of somebody whom nobody announces, and what invites them.
Item {
    id: root

    signal asked(string address)

    function ask() {
        if (field.text.trim() !== "")
            root.asked(field.text.trim())
    }
    function clear() {
        field.clear()
    }

    height: 7 * Theme.grid

    TextInputField {
        id: field
        objectName: "networkAddress"
        anchors { left: parent.left; leftMargin: 2 * Theme.grid; right: button.left; rightMargin: Theme.grid; verticalCenter: parent.verticalCenter }
        inputMethodHints: Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
        placeholderText: qsTr("Address, such as 192.168.1.7")
        onAccepted: root.ask()
    }
    PushButton {
        id: button
        objectName: "networkAddressButton"
        anchors { right: parent.right; rightMargin: Theme.grid; verticalCenter: parent.verticalCenter }
        enabled: field.text.trim() !== ""
        spoken: qsTr("Connect to this address")
        text: qsTr("Connect")
        onClicked: root.ask()
    }
}
