#pragma once

#include <QQuickItem>

/// What a screen reader says unasked.
namespace Announcement {

/// Whether anyone listens.
bool isWanted();

/// Qt 6.4 has no announcement of its own: a control's new value and description are what readers
/// speak at once. `value` is the number that the control's accessible interface gives.
void post(QQuickItem& control, double value);

}  // namespace Announcement
