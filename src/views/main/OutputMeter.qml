import QtQuick
import Ombrix.Views

/// How loud the output is, and whether it clips.
Item {
    id: root

    required property OmbrixViewController controller
    readonly property VoicesState voices: controller.voices

    implicitHeight: Theme.touchTarget
    visible: width > 80

    Row {
        anchors.centerIn: parent
        spacing: Theme.grid

        LevelMeter {
            anchors.verticalCenter: parent.verticalCenter
            height: 2 * Theme.grid
            level: root.voices.level
            litColour: Theme.amber
            unlitColour: Theme.panelRaised
            width: Math.min(180, root.width - clip.width - Theme.grid)

            Accessible.role: Accessible.Indicator
            Accessible.name: qsTr("Output level")
        }
        Rectangle {
            id: clip
            anchors.verticalCenter: parent.verticalCenter
            color: root.voices.clipped ? Theme.alert : Theme.panelRaised
            height: 2 * Theme.grid
            objectName: "clipLight"
            radius: Theme.halfGrid
            width: Math.max(40, word.implicitWidth + Theme.grid)

            Accessible.role: Accessible.Indicator
            Accessible.name: root.voices.clipped ? qsTr("The output clips") : qsTr("No clipping")

            Words {
                id: word
                anchors.centerIn: parent
                color: root.voices.clipped ? Theme.ground : Theme.creamDim
                font { bold: true; pixelSize: 11 }
                text: qsTr("CLIP")
                Accessible.ignored: true
            }
        }
    }
}
