import QtQuick
import Ombrix.Views

/// What pedals, wheels and other MIDI controllers do.
SettingsSection {
    id: root

    required property ControllerSetup controllers

    heading: qsTr("MIDI Controllers")
    footer: controllers.enabled ? qsTr("Hold a dial, or click it with the right button, and it learns the controller that you move.")
                                : qsTr("Pedals, bend and wheel, program changes, and controllers that the dials learn.")

    SettingsSwitch {
        objectName: "useControllers"
        on: root.controllers.enabled
        text: qsTr("Use MIDI controllers")
        onAsked: on => root.controllers.enabled = on
    }
    OptionRows {
        objectName: "midiChannel"
        options: root.controllers.channels
        title: qsTr("Channel")
        visible: root.controllers.enabled
        width: parent.width
        onAsked: name => root.controllers.chooseChannel(name)
    }
    OptionRows {
        objectName: "velocityCurve"
        options: root.controllers.curves
        title: qsTr("Velocity")
        visible: root.controllers.enabled
        width: parent.width
        onAsked: name => root.controllers.chooseCurve(name)
    }
    OptionRows {
        objectName: "bendRange"
        options: root.controllers.bendRanges
        title: qsTr("Bend range")
        visible: root.controllers.enabled
        width: parent.width
        onAsked: name => root.controllers.chooseBendRange(name)
    }
    OptionRows {
        objectName: "wheelDial"
        options: root.controllers.wheelDials
        title: qsTr("Modulation wheel")
        visible: root.controllers.enabled
        width: parent.width
        onAsked: name => root.controllers.chooseWheelDial(name)
    }
}
