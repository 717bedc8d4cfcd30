import QtQuick
import QtQuick.Window
import QtQuick.Templates as T
import Ombrix.Views

/// The settings: keys, labels and gain control, what sound comes out of and into, then MIDI.
Item {
    id: root

    required property SettingsController content
    required property AudioSetup audio
    required property MidiSetup midi
    readonly property string heading: content.title
    signal done

    implicitWidth: 68 * Theme.grid
    implicitHeight: sections.implicitHeight + 2 * sections.y

    function takeFocus() {
        doneButton.forceActiveFocus(Qt.PopupFocusReason)
    }

    Flickable {
        id: list
        objectName: "settingsList"
        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        contentHeight: root.implicitHeight
        T.ScrollBar.vertical: ScrollMark { }

        // What the keyboard steers is brought into sight.
        readonly property Item focused: Window.activeFocusItem
        onFocusedChanged: {
            if (!focused || !sections.contains(sections.mapFromItem(focused, 1, 1)))
                return
            const top = focused.mapToItem(contentItem, 0, 0).y
            contentY = Math.max(0, Math.min(top, Math.max(contentY, top + focused.height - height)))
        }

        Column {
            id: sections
            spacing: 2 * Theme.grid
            width: parent.width - 4 * Theme.grid
            x: 2 * Theme.grid
            y: 2 * Theme.grid

            KeySizeSection { settings: root.content; width: parent.width }
            KeyLabelsSection { settings: root.content; width: parent.width }
            GainSection { settings: root.content; width: parent.width }
            AudioOutputSection { audio: root.audio; width: parent.width }
            AudioInputSection { audio: root.audio; width: parent.width }
            MidiSection { midi: root.midi; width: parent.width }
            NetworkSection { network: root.midi.network; width: parent.width }
            ControllersSection { controllers: root.midi.controllers; width: parent.width }
            AboutSection { settings: root.content; width: parent.width; onTutorialWanted: root.done() }
        }
    }

    // In the heading's line.
    PushButton {
        id: doneButton
        objectName: "settingsDoneButton"
        anchors { right: parent.right; rightMargin: Theme.halfGrid }
        primary: true
        text: qsTr("Done")
        width: 9 * Theme.grid
        y: -height
        onClicked: root.done()
    }
}
