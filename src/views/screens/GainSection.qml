import QtQuick
import Ombrix.Views

/// Automatic gain control.
SettingsSection {
    id: root

    required property SettingsController settings

    heading: settings.audioHeading
    footer: settings.gainFooter

    SettingsSwitch {
        objectName: "gain"
        on: root.settings.automaticGain
        text: root.settings.gainText
        onAsked: wanted => root.settings.automaticGain = wanted
    }
}
