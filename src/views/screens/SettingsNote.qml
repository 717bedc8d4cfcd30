import QtQuick
import Ombrix.Views

/// A quiet sentence below or between rows; as many lines as it takes.
Words {
    bottomPadding: Theme.halfGrid
    color: Theme.creamDim
    font.pixelSize: Theme.labelSize
    leftPadding: 2 * Theme.grid
    maximumLineCount: 6
    rightPadding: 2 * Theme.grid
    topPadding: Theme.halfGrid
    visible: text !== ""
    wrapMode: Text.Wrap

    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
