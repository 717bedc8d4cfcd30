pragma Singleton
import QtQuick

/// Every colour, size and time of the screen. Lengths are points, times milliseconds.
QtObject {
    readonly property color ground: "#14110c"
    readonly property color panel: "#1f1a12"
    readonly property color panelRaised: "#2a2318"
    readonly property color line: "#3a3122"
    readonly property color amber: Qt.rgba(1.0, 0.8, 0.2, 1)
    readonly property color amberDim: Qt.rgba(0.5, 0.4, 0.1, 1)
    readonly property color amberDeep: Qt.rgba(0.375, 0.3, 0.075, 1)
    readonly property color cream: Qt.rgba(1.0, 0.964, 0.847, 1)
    readonly property color creamDim: Qt.rgba(1.0, 0.964, 0.847, 0.6)
    readonly property color alert: "#ff5a3c"
    /// What lies under a finger or a pointer.
    readonly property color hovered: "#332b1d"
    readonly property color pressed: "#171309"
    /// Behind a wave, at its top; at its bottom is the ground.
    readonly property color waveTop: "#1b170f"
    /// Where a voice reads the sound.
    // Opaque: the software renderer fills what shines through with several threads, and waits for
    // them at each of two dozen lines.
    readonly property color readHead: Qt.rgba(0.5, 0.482, 0.424, 1)
    readonly property color shadow: "#80000000"
    readonly property real disabledOpacity: 0.4

    readonly property int grid: 8
    readonly property int halfGrid: 4
    readonly property int panelRadius: 8
    readonly property int buttonRadius: 6
    readonly property int hairline: 1
    /// Of the line around what has the keyboard's focus.
    readonly property int focusLine: 2
    readonly property int touchTarget: 44

    readonly property string family: "Lato"
    /// How much larger than usual the desktop wants its texts, 1 to 1.5.
    property real textScale: 1
    readonly property int labelSize: Math.round(13 * textScale)
    readonly property int textSize: Math.round(15 * textScale)
    readonly property int titleSize: Math.round(20 * textScale)

    /// Points of the window for each point of the scene; more than 1 in very wide windows.
    property real sceneScale: 1

    /// False where the desktop asks for less motion.
    property bool motion: true
    readonly property int controlTime: motion ? 150 : 0
    readonly property int popoverTime: motion ? 250 : 0
    readonly property int tileTime: motion ? 500 : 0
}
