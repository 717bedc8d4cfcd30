#pragma once

#include <QEvent>
#include <QWindow>

/// Whether an event of a window means that what is held down now may never be seen to be let go.
inline bool losesInput(const QEvent& event, const QWindow& window) {
    const auto type = event.type();
    const bool minimised =
        type == QEvent::WindowStateChange && window.windowStates().testFlag(Qt::WindowMinimized);
    return minimised || type == QEvent::FocusOut || type == QEvent::WindowDeactivate ||
           type == QEvent::Hide || type == QEvent::Close;
}
