import QtQuick
import Ombrix.Views

/// The tutorial once more, and which version this is.
SettingsSection {
    id: root

    required property SettingsController settings
    signal tutorialWanted

    footer: settings.version

    ListRow {
        objectName: "showTutorial"
        text: qsTr("Show Tutorial")
        onClicked: {
            root.tutorialWanted()
            root.settings.tutorialWanted()
        }
    }
}
