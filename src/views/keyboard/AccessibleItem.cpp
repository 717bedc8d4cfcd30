#include "keyboard/AccessibleItem.h"

#include <QMetaType>
#include <QtQml>

namespace {

/// Null where no QML engine runs, so that there is nothing to tell.
QObject* accessibleOf(QQuickItem& item) {
    const QMetaObject* type = QMetaType::fromName("QQuickAccessibleAttached*").metaObject();
    if (!type)
        return nullptr;
    return qmlAttachedPropertiesObject(&item, qmlAttachedPropertiesFunction(&item, type));
}

}  // namespace

void describeItem(QQuickItem& item, QAccessible::Role role, const QString& name,
                  const QString& hint) {
    QObject* const accessible = accessibleOf(item);
    if (!accessible)
        return;
    accessible->setProperty("role", static_cast<int>(role));
    accessible->setProperty("name", name);
    accessible->setProperty("description", hint);
}

void onAccessiblePress(QQuickItem& item, QObject& receiver, const char* slot) {
    if (QObject* const accessible = accessibleOf(item))
        QObject::connect(accessible, SIGNAL(pressAction()), &receiver, slot);
}

void onAccessibleSteps(QQuickItem& item, QObject& receiver, const char* increase,
                       const char* decrease) {
    QObject* const accessible = accessibleOf(item);
    if (!accessible)
        return;
    QObject::connect(accessible, SIGNAL(increaseAction()), &receiver, increase);
    QObject::connect(accessible, SIGNAL(decreaseAction()), &receiver, decrease);
}
