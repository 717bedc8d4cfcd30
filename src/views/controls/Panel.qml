import QtQuick
import Ombrix.Views

/// A group of controls on a face of its own, under a small heading.
Rectangle {
    id: root

    property string heading: ""
    /// Height that the heading takes.
    readonly property int headingHeight: heading === "" ? 0 : Theme.grid * 2.5

    border { color: Theme.line; width: Theme.hairline }
    color: Theme.panel
    radius: Theme.panelRadius

    Accessible.role: Accessible.Grouping
    Accessible.name: heading

    Words {
        color: Theme.creamDim
        font { bold: true; capitalization: Font.AllUppercase; letterSpacing: 1; pixelSize: Math.min(Theme.labelSize - 2, 14) }
        height: root.headingHeight
        text: root.heading
        width: parent.width - 2 * x
        x: Theme.grid + Theme.halfGrid
        y: Theme.halfGrid
    }
}
