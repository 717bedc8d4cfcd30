import QtQuick
import QtQuick.Templates as T
import Ombrix.Views

/// Records the microphone for as long as it is held down.
T.AbstractButton {
    id: root

    required property TakeScreen take

    objectName: "microphoneButton"
    opacity: enabled ? 1 : Theme.disabledOpacity
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    onPressed: take.waveRecordDown()
    onReleased: take.waveRecordUp()
    onCanceled: take.waveRecordUp()

    Accessible.role: Accessible.Button
    Accessible.name: qsTr("Record a sound")
    Accessible.description: qsTr("Hold it down while you record")
    Accessible.onPressAction: take.recording ? take.waveRecordUp() : take.waveRecordDown()

    Rectangle {
        anchors.centerIn: parent
        border {
            color: root.take.recording ? Theme.alert : root.down ? Theme.amber : Theme.line
            width: root.take.recording ? 2 : Theme.hairline
        }
        color: root.down || root.take.recording ? Theme.pressed
               : root.hovered ? Theme.hovered : Theme.panelRaised
        height: width
        radius: width / 2
        width: 8 * Theme.grid

        Picture {
            anchors.centerIn: parent
            name: root.take.recording ? "microphone-recording.png" : "microphone.png"
        }
        FocusLine { radius: width / 2; visible: root.visualFocus }
    }
}
