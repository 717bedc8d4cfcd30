import QtQuick
import QtQuick.Templates as T
import Ombrix.Views

/// A list to choose one item from, with a field to search a long one. Letters that are typed go to
/// the field; the arrow keys and return choose.
Item {
    id: root

    required property ItemPickerController content
    readonly property string heading: content.title
    readonly property int rowHeight: Theme.touchTarget
    readonly property int searchHeight: content.searchable ? field.height + 2 * Theme.grid : 0
    property bool placed: false

    implicitWidth: 40 * Theme.grid - 2 * Theme.hairline
    implicitHeight: content.itemCount * rowHeight + searchHeight

    function takeFocus() {
        list.currentIndex = content.checkedRow
        list.forceActiveFocus(Qt.PopupFocusReason)
    }

    function showChecked() {
        list.currentIndex = Math.max(0, content.checkedRow)
        list.positionViewAtIndex(list.currentIndex, content.search === "" ? ListView.Center : ListView.Beginning)
    }

    // Where it was when it was open last; its own height has to be known for that.
    function restorePlace() {
        if (placed || list.height <= 0)
            return
        if (content.scroll < 0)
            showChecked()
        else
            list.contentY = Math.max(0, Math.min(content.scroll, list.contentHeight - list.height))
        placed = true
        content.scroll = list.contentY
    }

    function choose(row) {
        content.choose(row)
    }

    TextInputField {
        id: field
        objectName: "searchField"
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: Theme.grid }
        picture: "search.png"
        placeholderText: qsTr("Search")
        rightPadding: clear.visible ? clear.width : Theme.grid
        text: root.content.search
        visible: root.content.searchable

        KeyNavigation.down: list
        onTextEdited: {
            root.content.search = text
            root.showChecked()
        }
        onAccepted: root.choose(list.currentIndex)

        PushButton {
            id: clear
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            objectName: "searchClearButton"
            picture: "close.png"
            plain: true
            spoken: qsTr("Clear the search")
            visible: field.length > 0
            onClicked: {
                field.clear()
                field.textEdited()
                field.forceActiveFocus(Qt.OtherFocusReason)
            }
        }
    }

    ListView {
        id: list
        objectName: "itemList"
        property bool keyed: false

        anchors { fill: parent; topMargin: root.searchHeight }
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        highlightMoveDuration: 0
        keyNavigationEnabled: true
        model: root.content

        Accessible.role: Accessible.List
        Accessible.name: root.heading
        T.ScrollBar.vertical: ScrollMark {}

        onHeightChanged: Qt.callLater(root.restorePlace)
        onContentYChanged: if (root.placed) root.content.scroll = contentY
        Keys.onPressed: event => {
            if (!keyed)
                positionViewAtIndex(currentIndex, ListView.Contain)
            keyed = true
            if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
                root.choose(currentIndex)
            else if (root.content.searchable && event.text > " " && !(event.modifiers & Qt.ControlModifier)) {
                field.forceActiveFocus(Qt.OtherFocusReason)
                field.insert(field.length, event.text)
                field.textEdited()
            } else
                return
            event.accepted = true
        }

        delegate: ListRow {
            required property int index
            required property var model

            objectName: "item" + index
            chosen: model.checked
            focusPolicy: Qt.NoFocus
            height: root.rowHeight
            highlighted: list.activeFocus && list.keyed && ListView.isCurrentItem
            note: model.changed ? "•" : ""
            picture: model.image
            text: model.title
            width: list.width
            onClicked: root.choose(index)

            Accessible.name: model.changed ? qsTr("%1, changed").arg(text) : text

            FocusLine { anchors.margins: Theme.focusLine; visible: parent.highlighted }
        }
    }

    Words {
        anchors { centerIn: list; margins: 2 * Theme.grid }
        color: Theme.creamDim
        text: qsTr("Nothing of this name")
        visible: list.count === 0
    }
}
