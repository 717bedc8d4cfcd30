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
    x: area.x * scale
    y: area.y * scale
    // What is closed has no size: it would take touches where it will lie.
    screen: Component {
        EditSheet {
            controller: root.controller
            implicitHeight: root.area.height - root.topPadding - root.bottomPadding
            implicitWidth: root.area.width - root.leftPadding - root.rightPadding
            onDone: root.presentation.dismiss()
        }
    }
}
