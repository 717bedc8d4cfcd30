import QtQuick
import Ombrix.Views

/// Everything that opens over the main screen: a popover for each tag, shown while its tag is the
/// presented one, and alerts. Fills the window, and takes no touch itself.
Item {
    id: root

    required property OmbrixViewController controller
    /// The room between toolbar and keys, in points of the scene.
    required property rect aboveKeys

    ScreenPopover { controller: root.controller; tag: "pset"; anchor: "presetButton"; screen: Component { ItemPicker {} } }
    ScreenPopover { controller: root.controller; tag: "gmod"; anchor: "grainModeButton"; fromBelow: true; screen: Component { ItemPicker {} } }
    ScreenPopover { controller: root.controller; tag: "psav"; anchor: "saveButton"; screen: Component { PresetSavePanel {} } }

    ScreenPopover { controller: root.controller; tag: "recp"; anchor: "recordButton"; screen: Component { PerformanceComplete {} } }

    SettingsPopover { controller: root.controller }
    EditPopover { controller: root.controller; area: root.aboveKeys }

    Alert { alert: root.controller.alert }
}
