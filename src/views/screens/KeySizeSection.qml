import QtQuick
import Ombrix.Views

/// How wide the keys are: one of two.
SettingsSection {
    id: root

    required property SettingsController settings

    heading: settings.keyboardHeading

    Repeater {
        model: root.settings.keySizes

        ListRow {
            required property int index
            required property string modelData
            objectName: "keySize" + index
            chosen: root.settings.keySizeMarks[index]
            text: modelData
            onClicked: root.settings.chooseKeySize(index)
        }
    }
}
