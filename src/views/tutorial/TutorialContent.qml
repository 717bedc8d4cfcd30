import QtQuick
import QtQuick.Controls.Basic
import Ombrix.Views

/// What a tutorial's page says, below a bar with its title and the button that goes on.
FocusScope {
    id: content

    required property tutorialPage page

    signal nextAsked()
    signal hideAsked()

    readonly property int margin: 10
    implicitWidth: Math.max(bar.implicitWidth, message.width + 2 * margin)
    implicitHeight: bar.height + message.height + 2 * margin

    Accessible.role: Accessible.Dialog
    Accessible.name: page.title
    Accessible.description: page.message

    Item {
        id: bar
        implicitWidth: title.implicitWidth + button.implicitWidth + 5 * content.margin
        width: parent.width
        height: Theme.touchTarget + Theme.halfGrid

        Label {
            id: title
            x: content.margin
            height: parent.height
            verticalAlignment: Text.AlignVCenter
            text: content.page.title
            color: Theme.amber
            font { family: Theme.family; pixelSize: Theme.textSize; bold: true }
        }
        PushButton {
            id: button
            objectName: "tutorialNextButton"
            anchors { right: parent.right; rightMargin: Theme.halfGrid; verticalCenter: parent.verticalCenter }
            width: Math.max(8 * Theme.grid, implicitWidth)
            focus: true
            primary: content.page.isLast
            text: content.page.buttonTitle
            onClicked: content.nextAsked()
            Keys.onEscapePressed: content.hideAsked()
            Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape
        }
    }
    Rectangle {
        x: Theme.hairline
        y: bar.height
        width: parent.width - 2 * x
        height: Theme.hairline
        color: Theme.line
    }
    Label {
        id: message
        x: content.margin
        y: bar.height + content.margin
        width: Math.min(290, implicitWidth)
        wrapMode: Text.WordWrap
        maximumLineCount: 8  // within 180 points
        lineHeight: 1.15
        elide: Text.ElideRight
        text: content.page.message
        color: "white"
        style: Text.Sunken
        styleColor: "black"
        font { family: Theme.family; pixelSize: Theme.textSize }
    }
}
