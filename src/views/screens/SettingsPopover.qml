import QtQuick
import Ombrix.Views

/// The settings in the middle of the window. Keys beside them can be played meanwhile, so that a
/// change is heard at once.
ScreenPopover {
    id: root

    tag: "sett"
    closedElsewhere: false
    screen: Component {
        SettingsScreen {
            audio: root.controller.audio
            midi: root.controller.midi
            onDone: root.presentation.dismiss()
        }
    }
}
