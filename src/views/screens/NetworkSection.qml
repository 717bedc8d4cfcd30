import QtQuick
import Ombrix.Views

/// Who plays over the network, who may, and who is nearby.
SettingsSection {
    id: root

    required property NetworkSetup network

    heading: qsTr("MIDI over the Network")
    footer: network.place

    Item {
        height: 6 * Theme.grid
        width: parent.width

        Rectangle {
            id: lamp
            anchors.verticalCenter: parent.verticalCenter
            border { color: Theme.line; width: Theme.hairline }
            color: [Theme.ground, Theme.amberDim, Theme.amber, Theme.alert][root.network.lamp]
            height: Theme.grid + Theme.halfGrid
            objectName: "networkLamp"
            radius: height / 2
            width: height
            x: 2 * Theme.grid
        }
        Words {
            anchors { left: lamp.right; leftMargin: Theme.grid; right: parent.right; rightMargin: Theme.grid; verticalCenter: parent.verticalCenter }
            objectName: "networkState"
            text: root.network.state
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
    SettingsNote {
        color: Theme.alert
        objectName: "networkProblem"
        text: root.network.problem
        width: parent.width
    }
    OptionRows {
        objectName: "networkMode"
        options: root.network.modes
        title: qsTr("Who may play")
        width: parent.width
        onAsked: name => root.network.chooseMode(name)
    }
    Repeater {
        model: root.network.requests

        PeerRow {
            required property int index
            required property var modelData
            action: qsTr("Allow")
            objectName: "networkRequest" + index
            otherAction: qsTr("Refuse")
            peer: modelData
            width: root.width - 2
            onAsked: root.network.answer(peer.id, true)
            onOtherAsked: root.network.answer(peer.id, false)
        }
    }
    Repeater {
        model: root.network.connections

        PeerRow {
            required property int index
            required property var modelData
            action: qsTr("Disconnect")
            objectName: "networkPeer" + index
            peer: modelData
            width: root.width - 2
            onAsked: root.network.disconnectFrom(peer.id)
        }
    }
    Repeater {
        model: root.network.found

        PeerRow {
            required property int index
            required property var modelData
            action: qsTr("Connect")
            objectName: "networkFound" + index
            peer: modelData
            width: root.width - 2
            onAsked: root.network.connectTo(peer.address)
        }
    }
    AddressRow {
        visible: root.network.enabled
        width: root.width - 2
        onAsked: address => {
            if (root.network.connectTo(address))
                clear()
        }
    }
}
