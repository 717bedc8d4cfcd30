import QtQuick
import Ombrix.Views

/// A line of plain text that is shortened where it does not fit. Names are texts of their users:
/// they are never read as markup.
Text {
    color: Theme.cream
    elide: Text.ElideRight
    font { family: Theme.family; pixelSize: Theme.textSize }
    lineHeight: wrapMode === Text.NoWrap ? 1 : 1.15
    maximumLineCount: 1
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter
}
