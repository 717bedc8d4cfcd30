import Ombrix.Views

/// The dial of a parameter by its key.
Dial {
    required property DialBank dials
    required property string key

    dialState: dials.dial(key)
    objectName: key + "Dial"
}
