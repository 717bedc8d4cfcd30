import QtQuick
import Ombrix.Views

/// Records the microphone for as long as it is held down. A bubble at it tells the time.
HoldButton {
    id: root

    required property TakeScreen take

    implicitHeight: face.height
    implicitWidth: face.width
    objectName: "microphoneButton"
    opacity: enabled ? 1 : Theme.disabledOpacity
    onPressed: take.waveRecordDown()
    onReleased: take.waveRecordUp()

    Accessible.role: Accessible.Button
    Accessible.name: qsTr("Record a sound")
    Accessible.description: qsTr("Hold it down while you record")
    Accessible.focusable: true
    // An action can only press: the first begins a take, the next one ends it.
    Accessible.onPressAction: take.recording ? take.waveRecordUp() : take.waveRecordDown()

    Rectangle {
        id: face
        anchors.centerIn: parent
        border {
            color: root.take.recording ? Theme.alert : root.held ? Theme.amber : Theme.line
            width: root.take.recording ? Theme.focusLine : Theme.hairline
        }
        color: root.held || root.take.recording ? Theme.pressed
               : hover.hovered ? Theme.hovered : Theme.panelRaised
        height: width
        radius: width / 2
        width: 8 * Theme.grid

        Picture {
            anchors.centerIn: parent
            name: root.take.recording ? "microphone-recording.png" : "microphone.png"
        }
        FocusLine { radius: width / 2; visible: root.activeFocus }
    }
    HoverHandler { id: hover }
    TakeBubble { target: face; text: root.take.bubble }
}
