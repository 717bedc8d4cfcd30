import QtQuick
import Ombrix.Views

/// A panel of dials, each in a column of its own.
Panel {
    id: root

    required property DialBank dials
    /// Of the parameters, in the order of the columns.
    required property list<string> keys
    required property int column

    implicitHeight: 108
    implicitWidth: keys.length * column

    Row {
        y: 2 * Theme.grid

        Repeater {
            model: root.keys
            ParameterColumn {
                required property string modelData
                dials: root.dials
                key: modelData
                width: root.column
            }
        }
    }
}
