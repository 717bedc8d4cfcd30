import QtQuick
import QtQuick.Dialogs
import Ombrix.Views

/// Asks for a sound to put behind the one in use.
FileDialog {
    required property WaveEditor editor

    fileMode: FileDialog.OpenFile
    nameFilters: [
        qsTr("Sounds (%1)").arg("*.wav *.aif *.aiff *.caf *.flac *.ogg *.mp3 *.m4a *.aac"),
        qsTr("All files (*)")
    ]
    title: qsTr("Join a Sound")
    onAccepted: editor.join(selectedFile)
}
