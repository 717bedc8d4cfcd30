import QtQuick
import Ombrix.Views

/// A lamp for each voice: bright while it sounds, fading while it is released, dark at rest.
Item {
    id: root

    /// Of each voice: 0 rests, 1 sounds, 2 is being released.
    required property list<int> stages
    readonly property int sounding: stages.filter(stage => stage === 1).length

    Accessible.role: Accessible.Indicator
    Accessible.name: qsTr("%1 of %2 voices sound").arg(sounding).arg(stages.length)

    Repeater {
        model: root.stages.length
        Picture {
            id: lamp
            required property int index
            readonly property int stage: root.stages[index] ?? 0
            name: "voice-lamp.png"
            // Whole points keep the lamps alike.
            x: Math.round((root.width - width) * index / Math.max(1, root.stages.length - 1))
            y: (root.height - height) / 2

            Picture {
                name: "voice-lamp-lit.png"
                opacity: lamp.stage === 1 ? 1 : lamp.stage === 2 ? 0.45 : 0
                visible: opacity > 0
                Behavior on opacity { NumberAnimation { duration: Theme.controlTime } }
            }
        }
    }
}
