import QtQuick
import QtQuick.Window
import Ombrix.Views

/// The window. From the width on at which all keys are seen, the whole scene grows with it.
Window {
    id: window

    required property OmbrixViewController controller

    width: 1280
    height: 800
    minimumWidth: 1024
    minimumHeight: 700
    title: "Ombrix Synth"
    color: Theme.ground

    Binding { target: Theme; property: "sceneScale"; value: scene.scale }
    Binding {
        target: Theme
        property: "textScale"
        // 96 dots an inch are 100 %; below 110 % it is the screen's own inexactness.
        readonly property real wanted: window.screen ? Screen.logicalPixelDensity * 25.4 / 96 : 1
        value: wanted < 1.1 ? 1 : Math.min(1.5, wanted)
    }

    InstrumentScreen {
        id: scene

        readonly property int wholeKeyboard: 2652

        controller: window.controller
        height: window.height / scale
        scale: Math.max(1, Math.min(window.width / wholeKeyboard, window.height / window.minimumHeight))
        transformOrigin: Item.TopLeft
        width: window.width / scale
    }
    DropTarget {
        anchors.fill: parent
        sharing: window.controller.sharing
    }
    Announcer { id: announcer }
    Connections {
        target: window.controller.performance
        function onAnnounced(text) { announcer.announce(text) }
    }
    Screens {
        anchors.fill: parent
        controller: window.controller
    }
    TutorialPage { manager: window.controller.tutorial }
    Shortcuts {
        controller: window.controller
        window: window
    }
}
