import QtQuick
import QtQuick.Templates as T
import Ombrix.Views

/// A push button whose background casts a shadow.
T.Button {
    id: button

    implicitWidth: Math.max(background.implicitWidth, contentItem.implicitWidth + leftPadding + rightPadding)
    implicitHeight: Theme.touchTarget
    leftPadding: 2 * Theme.grid
    rightPadding: 2 * Theme.grid
    focusPolicy: Qt.StrongFocus
    opacity: enabled ? 1 : 0.4
    font.family: Theme.family
    font.pixelSize: Theme.textSize
    font.bold: true

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: clicked()

    background: StretchedPicture {
        name: "roundrect-shadow.png"
        leftCap: 41
        opacity: button.down ? 0.6 : 1

        Rectangle {
            anchors.fill: parent
            anchors.margins: Theme.halfGrid
            visible: button.visualFocus
            color: "transparent"
            radius: Theme.buttonRadius
            border.width: 2
            border.color: Theme.amber
        }
    }
    contentItem: Text {
        text: button.text
        font: button.font
        color: button.down ? Theme.amber : Theme.cream
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
