import QtQuick
import Ombrix.Views

/// What is heard, and how loud it is just now.
SettingsSection {
    id: root

    required property AudioSetup audio

    heading: qsTr("Microphone")
    footer: audio.inputNote

    OptionRows {
        objectName: "audioInput"
        options: root.audio.inputs
        title: qsTr("Input")
        visible: options.length > 0
        width: parent.width
        onAsked: name => root.audio.chooseInput(name)
    }
    LevelMeter {
        objectName: "inputMeter"
        level: root.audio.meter
        name: qsTr("Level")
        width: parent.width
    }
}
