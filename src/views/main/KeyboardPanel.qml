import QtQuick
import Ombrix.Views

/// The keys and their overview: what they play goes to the controller, and they show what others
/// play.
PianoKeyboard {
    id: root

    required property OmbrixViewController controller

    largeKeys: controller.settings.largeKeys
    showLabels: controller.settings.showLabels

    Connections {
        target: root.keyboard
        function onTinkleIvory(key: int) { root.controller.tinkleIvory(key) }
        function onUntinkleIvory(key: int) { root.controller.untinkleIvory(key) }
    }
    Connections {
        target: root.controller
        function onKeyShown(key: int, highlighted: bool) { root.keyboard.showKey(key, highlighted) }
    }
    Connections {
        target: root.computerKeys
        function onCloseTop() { root.controller.closeTop() }
        function onSilenceEverything() { root.controller.silence() }
    }
}
