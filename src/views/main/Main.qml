import QtQuick
import QtQuick.Window
import Ombrix.Views

/// The window.
Window {
    id: window

    required property OmbrixViewController controller

    width: 1280
    height: 800
    minimumWidth: 1024
    minimumHeight: 700
    visible: true
    title: "Ombrix Synth"
    color: Theme.ground
}
