import QtQuick
import Ombrix.Views

/// Has screen readers say a text at once: to them it is a notice that appears for a moment.
Item {
    id: root

    property string text: ""

    function announce(words) {
        text = ""
        text = words
        gone.restart()
    }

    height: 1
    visible: text !== ""
    width: 1

    Accessible.role: Accessible.Notification
    Accessible.name: text

    Timer { id: gone; interval: 5000; onTriggered: root.text = "" }
}
