import QtQuick
import QtQuick.Window
import Ombrix.Views

/// The window. From the width on at which all keys are seen the whole scene grows with it, and in
/// one that is smaller than it may be, as some desktops make it, the scene shrinks.
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
        // 96 dots an inch and 10 points are 100 %; what is a little more is a desktop's own taste.
        readonly property real wanted: Math.max(Screen.logicalPixelDensity * 25.4 / 96, Application.font.pointSize / 10)
        value: wanted < 1.2 ? 1 : Math.min(1.5, wanted)
    }

    InstrumentScreen {
        id: scene

        readonly property int wholeKeyboard: 2652
        readonly property real room: Math.min(window.width / window.minimumWidth, window.height / window.minimumHeight)

        controller: window.controller
        height: window.height / scale
        scale: Math.min(room, Math.max(1, window.width / wholeKeyboard))
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
        aboveKeys: scene.aboveKeys
        anchors.fill: parent
        controller: window.controller
    }
    RequestBar {
        readonly property real below: window.controller.notices.text === "" ? 0 : Theme.touchTarget + Theme.halfGrid

        network: window.controller.midi.network
        objectName: "requestBar"
        scale: scene.scale
        transformOrigin: Item.TopLeft
        width: Math.min(implicitWidth, scene.width - 4 * Theme.grid)
        x: (window.width - width * scale) / 2
        y: (scene.aboveKeys.y + Theme.halfGrid + below) * scale
        z: 10000000  // popovers are in a layer at a tenth of it
    }
    TutorialPage { manager: window.controller.tutorial }
    Shortcuts {
        controller: window.controller
        window: window
    }
}
