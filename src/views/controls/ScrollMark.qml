import QtQuick
import QtQuick.Templates as T
import Ombrix.Views

/// Shows, while a list is scrolled, where in it one is. `T.ScrollBar.vertical: ScrollMark {}`
T.ScrollBar {
    id: root

    implicitWidth: Theme.grid
    padding: 2
    minimumSize: 0.08
    visible: size < 1

    contentItem: Rectangle {
        color: root.pressed ? Theme.amber : Theme.creamDim
        implicitWidth: Theme.halfGrid
        opacity: root.active ? 1 : 0.35
        radius: 2
        Behavior on opacity { NumberAnimation { duration: Theme.controlTime } }
    }
}
