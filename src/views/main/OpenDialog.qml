import QtQuick
import QtQuick.Dialogs
import Ombrix.Views

/// Asks for sounds, presets and bundles.
FileDialog {
    id: dialog

    required property Sharing sharing

    fileMode: FileDialog.OpenFiles
    nameFilters: [
        qsTr("Sounds and presets (%1)").arg("*.wav *.aif *.aiff *.caf *.flac *.ogg *.mp3 *.m4a *.aac *.plist *.ombrix"),
        qsTr("All files (*)")
    ]
    title: qsTr("Open Sound or Preset")
    onAccepted: sharing.drop(selectedFiles)
}
