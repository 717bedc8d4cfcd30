import Ombrix.Views

/// A button of the toolbar, which in a narrow one shows its picture alone.
PushButton {
    required property string title
    required property bool compact

    plain: true
    spoken: title
    text: compact ? "" : title
}
