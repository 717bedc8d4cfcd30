#include "dial/Announcement.h"

#include <QAccessible>

bool Announcement::isWanted() {
    return QAccessible::isActive();
}

void Announcement::post(QQuickItem& control, double value) {
    QAccessibleValueChangeEvent changed(&control, value);
    QAccessible::updateAccessibility(&changed);
    QAccessibleEvent described(&control, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&described);
}
