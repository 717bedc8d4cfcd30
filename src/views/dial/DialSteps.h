#pragma once

#include <QKeyEvent>
#include <QWheelEvent>

/// What the wheel and keys ask of a dial. Steps are parts of the sweep; a fine one is a tenth.
namespace DialSteps {

bool isFine(Qt::KeyboardModifiers modifiers);
bool asksForMenu(const QKeyEvent& event);
/// 0 from a key that does not turn.
float ofKey(const QKeyEvent& event);
float ofWheel(const QWheelEvent& event);

}  // namespace DialSteps
