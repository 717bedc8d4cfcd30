import QtQuick
import Ombrix.Views

/// What plays the instrument over MIDI.
SettingsSection {
    id: root

    required property MidiSetup midi

    heading: qsTr("MIDI Sources")
    footer: qsTr("Whatever is connected plays at once. Other programs can also send to the port “%1”.").arg(midi.port)

    SettingsNote {
        color: Theme.creamDim
        font.pixelSize: Theme.textSize
        height: 6 * Theme.grid
        objectName: "noMidiSources"
        text: root.midi.sources.length ? "" : qsTr("None connected")
        width: parent.width
    }
    Repeater {
        model: root.midi.sources

        SettingsNote {
            required property int index
            required property string modelData
            color: Theme.cream
            font.pixelSize: Theme.textSize
            height: 6 * Theme.grid
            objectName: "midiSource" + index
            text: modelData
            width: parent.width
        }
    }
}
