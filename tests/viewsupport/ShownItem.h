#pragma once

#include <QQuickItem>
#include <QQuickWindow>
#include <memory>
#include <string>

/// One item in a shown window of its own, as large as the item, which is at (0, 0).
class ShownItem {
  public:
    explicit ShownItem(std::unique_ptr<QQuickItem> item);

    /// The item that QML text makes; it may import Ombrix.Views.
    static std::unique_ptr<QQuickItem> fromQml(const std::string& qml);

    QQuickWindow& window() { return m_window; }
    template <typename Item>
    Item& as() {
        return *qobject_cast<Item*>(m_item.get());
    }
    /// What the window shows now.
    QImage picture();

  private:
    QQuickWindow m_window;
    std::unique_ptr<QQuickItem> m_item;  // goes before the window
};
