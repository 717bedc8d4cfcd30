import QtQuick
import Ombrix.Views

/// The sheet on which the sound is edited. It takes all the room between toolbar and keys, which
/// stay in use.
ScreenPopover {
    id: root

    /// In points of the scene.
    required property rect area

    tag: "edit"
    closedElsewhere: false
    height: area.height
    width: area.width
    x: area.x * scale
    y: area.y * scale
    screen: Component {
        EditSheet {
            controller: root.controller
            onDone: root.presentation.dismiss()
        }
    }
}
