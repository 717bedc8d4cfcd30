import QtQuick
import Ombrix.Views

/// Whether keys say their notes.
SettingsSection {
    id: root

    required property SettingsController settings

    SettingsSwitch {
        objectName: "labl"
        on: root.settings.showLabels
        text: root.settings.labelsText
        onAsked: wanted => root.settings.showLabels = wanted
    }
}
