#pragma once

#include <QAccessible>
#include <QQuickItem>

/// Tells screen readers of an item that is made in C++: what QML says with `Accessible.role`,
/// `Accessible.name` and `Accessible.description`. [main]
void describeItem(QQuickItem& item, QAccessible::Role role, const QString& name,
                  const QString& hint = {});

/// Calls `slot` (made with SLOT) when a screen reader presses the item, which is described already.
/// [main]
void onAccessiblePress(QQuickItem& item, QObject& receiver, const char* slot);

/// The same for the steps of a slider. [main]
void onAccessibleSteps(QQuickItem& item, QObject& receiver, const char* increase,
                       const char* decrease);
