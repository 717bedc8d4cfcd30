#include "dial/DialSteps.h"

#include "dial/DialDrag.h"

namespace {

constexpr float kKeyOrNotch = 0.02f;
constexpr float kPageKey = 0.1f;
constexpr qreal kEighthsInNotch = 120;  // of a degree

float plainStep(Qt::KeyboardModifiers modifiers) {
    return DialSteps::isFine(modifiers) ? kKeyOrNotch * kFineTurn : kKeyOrNotch;
}

}  // namespace

bool DialSteps::isFine(Qt::KeyboardModifiers modifiers) {
    return modifiers.testFlag(Qt::ShiftModifier);
}

bool DialSteps::asksForMenu(const QKeyEvent& event) {
    return event.key() == Qt::Key_Menu ||
           (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier);
}

float DialSteps::ofKey(const QKeyEvent& event) {
    switch (event.key()) {
        case Qt::Key_Up:
        case Qt::Key_Right:
            return plainStep(event.modifiers());
        case Qt::Key_Down:
        case Qt::Key_Left:
            return -plainStep(event.modifiers());
        case Qt::Key_PageUp:
            return kPageKey;
        case Qt::Key_PageDown:
            return -kPageKey;
        case Qt::Key_Home:
            return -1;
        case Qt::Key_End:
            return 1;
        default:
            return 0;
    }
}

float DialSteps::ofWheel(const QWheelEvent& event) {
    const QPoint angle = event.angleDelta();
    const int turned = angle.y() != 0 ? angle.y() : angle.x();  // some desktops turn it with Shift
    return float(turned / kEighthsInNotch) * plainStep(event.modifiers());
}
