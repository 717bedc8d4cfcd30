#pragma once

#include <QEvent>

/// Whether an event of a window means that what is held down now may never be seen to be let go.
inline bool losesInput(QEvent::Type type) {
    return type == QEvent::FocusOut || type == QEvent::WindowDeactivate || type == QEvent::Hide ||
           type == QEvent::Close;
}
