import QtQuick
import Ombrix.Views

/// Which MIDI controller turns a dial, in the gap of its lamps; blinks while one is waited for.
Rectangle {
    id: root

    required property DialState dialState
    readonly property bool waits: dialState !== null && dialState.learning
    readonly property string controllers: dialState ? dialState.controllers : ""
    property bool lit: true

    border { color: waits ? Theme.amber : Theme.line; width: Theme.hairline }
    color: waits && lit ? Theme.amber : Theme.ground
    height: 13
    radius: 4
    visible: waits || controllers !== ""
    width: words.implicitWidth + Theme.halfGrid + 2  // at most 37: there the lowest lamps are

    Words {
        id: words
        anchors.centerIn: parent
        color: root.waits ? (root.lit ? Theme.ground : Theme.amber) : Theme.cream
        font { bold: true; pixelSize: text.length > 5 ? 9 : 10 }
        // Of several, as devices differ, the first stands for all.
        text: root.waits ? "CC ?" : root.controllers.replace(/,.*/, "+")
    }
    // Twice a second, and only while it waits.
    Timer {
        interval: 500
        repeat: true
        running: root.waits && root.visible
        onRunningChanged: root.lit = true
        onTriggered: root.lit = !root.lit
    }
}
