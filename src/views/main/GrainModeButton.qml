import QtQuick
import QtQuick.Templates as T
import Ombrix.Views

/// Shows how the grains move, and offers the other ways.
T.AbstractButton {
    id: root

    required property OmbrixViewController controller

    objectName: "grainModeButton"
    implicitHeight: 86
    opacity: enabled ? 1 : Theme.disabledOpacity
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    onClicked: controller.grainModeClicked()

    Accessible.role: Accessible.Button
    Accessible.name: controller.grainMode.spokenLabel
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    Rectangle {
        border { color: root.down ? Theme.amber : Theme.line; width: Theme.hairline }
        color: root.down ? Theme.pressed : root.hovered ? Theme.hovered : Theme.panelRaised
        height: 6 * Theme.grid
        radius: Theme.buttonRadius
        width: 8 * Theme.grid
        x: (parent.width - width) / 2
        y: 2 * Theme.grid

        Picture {
            anchors.centerIn: parent
            name: root.controller.grainMode.image
        }
        FocusLine { visible: root.visualFocus }
    }
    Words {
        color: root.down || root.visualFocus ? Theme.cream : Theme.creamDim
        font.pixelSize: Theme.labelSize
        horizontalAlignment: Text.AlignHCenter
        objectName: "grainModeLabel"
        text: root.controller.grainMode.name
        width: parent.width
        y: 70
    }
}
