import QtQuick
import Ombrix.Views

/// A name for the present settings, and what saving under it will do.
Item {
    id: root

    required property PresetSaveController content
    readonly property string heading: content.title

    implicitWidth: 40 * Theme.grid - 2 * Theme.hairline
    implicitHeight: explanation.y + explanation.height + 2 * Theme.grid

    function takeFocus() {
        field.forceActiveFocus(Qt.PopupFocusReason)
        field.selectAll()
    }

    // What an input method is still composing belongs to the name.
    function save() {
        Qt.inputMethod.commit()
        if (content.canSave)
            button.forceActiveFocus(Qt.OtherFocusReason)
        content.performSave()
    }

    TextInputField {
        id: field
        objectName: "presetNameField"
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 2 * Theme.grid }
        text: root.content.presetName
        Accessible.name: qsTr("Name of the preset")
        onTextEdited: root.content.textChanged(text)
        onAccepted: root.save()
    }

    Words {
        id: explanation
        objectName: "explanation"
        anchors { left: field.left; right: field.right; top: field.bottom; topMargin: Theme.grid + Theme.halfGrid }
        color: root.content.failed ? Theme.alert : Theme.creamDim
        font.pixelSize: Theme.labelSize
        height: Math.max(implicitHeight, 3 * Theme.labelSize * 1.25)
        maximumLineCount: 6
        text: root.content.explanation
        verticalAlignment: Text.AlignTop
        wrapMode: Text.Wrap
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    // In the heading's line.
    PushButton {
        id: button
        objectName: "performSaveButton"
        anchors { right: parent.right; rightMargin: Theme.halfGrid }
        enabled: root.content.canSave
        primary: enabled
        text: qsTr("Save")
        y: -height
        onClicked: root.save()
    }
}
