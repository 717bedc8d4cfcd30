import QtQuick
import Ombrix.Views

/// Arms, records and ends a performance; while it records it shows the time.
PushButton {
    id: root

    required property OmbrixViewController controller
    /// Armed or recording.
    readonly property bool busy: controller.performance.state !== 0

    objectName: "recordButton"
    picture: busy ? "stop.png" : "record.png"
    text: controller.performance.buttonTitle
    textColor: busy ? Theme.alert : Theme.cream
    // As wide as its widest text, so that the row stands still while the time runs.
    width: Math.max(112, widest.width + 24 + 4 * Theme.grid)
    onClicked: controller.performance.toolbarRecordClicked()

    TextMetrics {
        id: widest
        font { family: Theme.family; pixelSize: Theme.textSize }
        text: qsTr("Waiting...")
    }
}
