import QtQuick
import Ombrix.Views

/// What is played through, how far ahead, and how that goes.
SettingsSection {
    id: root

    required property AudioSetup audio

    heading: qsTr("Audio Device")
    footer: audio.bufferNote

    SettingsNote {
        objectName: "audioState"
        color: Theme.cream
        font.pixelSize: Theme.textSize
        text: root.audio.state
        topPadding: Theme.grid
        width: parent.width
    }
    SettingsNote {
        text: root.audio.health
        width: parent.width
    }
    SettingsNote {
        objectName: "audioProblem"
        color: Theme.alert
        text: root.audio.problem
        width: parent.width
    }
    OptionRows {
        objectName: "audioDevice"
        busy: root.audio.looking
        options: root.audio.devices
        title: qsTr("Output")
        width: parent.width
        onAsked: name => root.audio.chooseDevice(name)
    }
    OptionRows {
        objectName: "audioBuffer"
        options: root.audio.bufferSizes
        title: qsTr("Buffer")
        visible: options.length > 0
        width: parent.width
        onAsked: name => root.audio.chooseBufferSize(name)
    }
}
