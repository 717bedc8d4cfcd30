import QtQuick
import Ombrix.Views

/// The instrument from 1024 by 700 points up: the wave takes the height that the others leave, and
/// the envelope and the columns of the dials share the width.
FocusScope {
    id: root

    required property OmbrixViewController controller

    /// Where sheets lie that leave toolbar and keys in use.
    readonly property rect aboveKeys: Qt.rect(gap, toolBar.height, width - 2 * gap, piano.y - toolBar.height - gap)

    readonly property int gap: Theme.grid
    readonly property int panelHeight: 108
    /// Dials in the first row left of the envelope; the gaps between its panels come on top.
    readonly property int columns: 8
    readonly property int narrowestEnvelope: 344
    readonly property int spare: width - 2 * gap - 3 * gap - columns * 80 - narrowestEnvelope
    /// Half of what a wide window has to spare goes to the columns, as long as they belong together.
    readonly property int column: 80 + Theme.halfGrid
                                  * Math.floor(Math.min(40, Math.max(0, spare) / 2 / columns) / Theme.halfGrid)

    ToolBar {
        id: toolBar
        controller: root.controller
        height: 48
        width: parent.width
    }
    WavePanel {
        id: wavePanel
        anchors { left: parent.left; right: parent.right; top: toolBar.bottom; bottom: first.top; leftMargin: root.gap; rightMargin: root.gap; bottomMargin: root.gap }
        controller: root.controller
    }
    Row {
        id: first
        anchors { left: parent.left; leftMargin: root.gap; bottom: second.top; bottomMargin: root.gap }
        height: root.panelHeight
        spacing: root.gap

        GrainPanel { column: root.column; controller: root.controller }
        DialPanel { column: root.column; dials: root.controller.dials; heading: qsTr("Drive"); keys: ["distortionStrength"] }
        DialPanel { column: root.column; dials: root.controller.dials; heading: qsTr("Ring"); keys: ["ringModFrequency", "ringModDepth"] }
    }
    Row {
        id: second
        anchors { left: parent.left; leftMargin: root.gap; bottom: piano.top; bottomMargin: root.gap }
        height: root.panelHeight
        spacing: root.gap

        DialPanel { id: filter; column: root.column; dials: root.controller.dials; heading: qsTr("Filter"); keys: ["filterCutoff", "filterResonance", "filterResonanceBass"] }
        DialPanel { id: echo; column: root.column; dials: root.controller.dials; heading: qsTr("Echo"); keys: ["echoDelay", "echoFeedback"] }
        VoicesPanel {
            controller: root.controller
            height: parent.height
            width: first.width - filter.width - echo.width - 2 * root.gap
        }
    }
    EnvelopePanel {
        anchors { left: first.right; leftMargin: root.gap; right: parent.right; rightMargin: root.gap; top: first.top; bottom: second.bottom }
        controller: root.controller
    }
    KeyboardPanel {
        id: piano
        anchors { bottom: parent.bottom; left: parent.left; right: parent.right }
        controller: root.controller
    }
    NoticeBar {
        anchors { horizontalCenter: parent.horizontalCenter; top: toolBar.bottom; topMargin: Theme.halfGrid }
        objectName: "noticeBar"
        text: root.controller.notices.text
        width: Math.min(implicitWidth, parent.width - 4 * root.gap)
        onClosed: root.controller.notices.close()
    }
}
