import QtQuick
import Ombrix.Views

/// How far something that takes a while has come, 0 to 1.
Rectangle {
    id: root

    property real progress: 0

    color: Theme.panelRaised
    implicitHeight: Theme.halfGrid
    implicitWidth: 30 * Theme.grid
    radius: height / 2

    Accessible.role: Accessible.ProgressBar
    Accessible.name: qsTr("%1 percent").arg(Math.round(progress * 100))

    Rectangle {
        color: Theme.amber
        height: parent.height
        radius: parent.radius
        width: Math.max(height, parent.width * Math.min(1, root.progress))
    }
}
