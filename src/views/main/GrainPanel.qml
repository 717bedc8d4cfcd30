import QtQuick
import Ombrix.Views

/// How grains are cut: speed and size, the mode in which they move, frequency modulation, level.
Panel {
    id: root

    required property OmbrixViewController controller
    required property int column

    heading: qsTr("Grain")
    implicitHeight: 108
    implicitWidth: 5 * column

    Row {
        y: 2 * Theme.grid

        ParameterColumn { dials: root.controller.dials; key: "grainSpeed"; width: root.column }
        ParameterColumn { dials: root.controller.dials; key: "grainSize"; width: root.column }
        GrainModeButton { controller: root.controller; width: root.column }
        ParameterColumn { dials: root.controller.dials; key: "fmFrequency"; width: root.column }
        ParameterColumn { dials: root.controller.dials; key: "preamp"; width: root.column }
    }
}
