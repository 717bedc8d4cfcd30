import QtQuick
import Ombrix.Views

/// What the computer's keys do besides playing.
Item {
    id: root

    required property OmbrixViewController controller
    required property Window window

    function open() {
        if (dialog.item)
            dialog.item.open()
        else
            dialog.setSource("OpenDialog.qml", { sharing: root.controller.sharing })
    }
    function toggleFullScreen() {
        if (window.visibility === Window.FullScreen)
            window.showNormal()
        else
            window.showFullScreen()
    }

    Shortcut { sequences: [StandardKey.Open]; onActivated: root.open() }
    Shortcut { sequences: [StandardKey.Save]; onActivated: root.controller.toolbarSaveClicked() }
    Shortcut { sequence: "Ctrl+R"; onActivated: root.controller.performance.toolbarRecordClicked() }
    Shortcut { sequence: "Ctrl+E"; onActivated: root.controller.editClicked() }
    Shortcut { sequence: "Ctrl+,"; onActivated: root.controller.toolbarSettingsClicked() }
    Shortcut { sequence: "F1"; onActivated: root.controller.helpClicked() }
    Shortcut { sequence: "F11"; onActivated: root.toggleFullScreen() }
    Shortcut { sequences: [StandardKey.Quit]; onActivated: root.window.close() }

    // Made when it is first wanted: it takes longer to load than the rest of the window.
    Loader {
        id: dialog
        onLoaded: item.open()
    }
}
