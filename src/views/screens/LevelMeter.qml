import QtQuick
import Ombrix.Views

/// A row with a bar that is lit as far as `level`, 0 to 1; its last tenth warns.
Item {
    id: root

    property real level: 0
    property string name: ""

    implicitHeight: 6 * Theme.grid

    Accessible.role: Accessible.Indicator
    Accessible.name: name

    Words {
        id: label
        anchors.verticalCenter: parent.verticalCenter
        text: root.name
        width: 9 * Theme.grid
        x: 2 * Theme.grid
    }
    Rectangle {
        id: track
        anchors {
            left: label.right
            right: parent.right
            rightMargin: 2 * Theme.grid
            verticalCenter: parent.verticalCenter
        }
        border { color: Theme.line; width: Theme.hairline }
        color: Theme.ground
        height: Theme.grid + 2 * Theme.hairline
        radius: height / 2

        Rectangle {
            color: root.level > 0.9 ? Theme.alert : Theme.amber
            height: Theme.grid
            radius: height / 2
            visible: root.level > 0
            width: Math.max(height, (track.width - 2 * x) * Math.min(1, root.level))
            x: Theme.hairline
            y: Theme.hairline
        }
    }
}
