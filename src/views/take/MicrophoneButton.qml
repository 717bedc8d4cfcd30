import QtQuick
import Ombrix.Views

/// Held down it records a take. A bubble at it tells the time.
HoldButton {
    id: root

    required property TakeScreen take

    implicitHeight: Theme.touchTarget
    implicitWidth: Theme.touchTarget
    opacity: enabled ? 1 : Theme.disabledOpacity
    objectName: "microphoneButton"
    onPressed: take.waveRecordDown()
    onReleased: take.waveRecordUp()

    Accessible.role: Accessible.Button
    Accessible.name: qsTr("Record a sound")
    Accessible.description: take.recording ? qsTr("Recording, %1").arg(take.remaining)
                                           : qsTr("Hold down to record the microphone")
    Accessible.focusable: true
    // An action can press only: the first begins the take, the next one ends it.
    Accessible.onPressAction: take.recording ? take.waveRecordUp() : take.waveRecordDown()

    Rectangle {
        anchors.fill: parent
        border { color: root.take.recording ? Theme.alert : Theme.line; width: Theme.hairline }
        color: root.held ? Theme.pressed : hover.hovered ? Theme.hovered : Theme.panelRaised
        radius: Theme.buttonRadius

        FocusLine { visible: root.activeFocus }
    }
    Picture {
        anchors.centerIn: parent
        name: root.take.recording ? "microphone-recording.png" : "microphone.png"
    }
    HoverHandler { id: hover }
    TakeBubble { target: root; text: root.take.bubble }
}
