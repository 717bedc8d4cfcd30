#pragma once

#include <QQuickItem>
#include <QQuickWindow>
#include <functional>
#include <memory>

#include "Fingers.h"
#include "main/MainWindow.h"
#include "screens/MainLoop.h"
#include "screens/OmbrixAppDelegate.h"

/// The whole instrument as the program makes it, in a shown window, and someone who uses it.
class InstrumentWindow {
  public:
    /// Points. Returns when the first frame is on the screen and the last preset restored.
    explicit InstrumentWindow(QSize size = {1280, 800});
    /// Ends it cleanly, unless `crash` was called.
    ~InstrumentWindow();

    OmbrixViewController& controller() { return *m_delegate.viewController(); }
    OmbrixAppDelegate& delegate() { return m_delegate; }
    QQuickWindow& window() { return *m_window->window(); }
    Fingers& fingers() { return *m_fingers; }

    /// The visible item of that objectName; throws when there is none.
    QQuickItem& item(const QString& objectName);
    bool has(const QString& objectName) { return find(objectName) != nullptr; }
    /// A place of an item in the window: 0 to 1 of its width and height.
    QPoint placeOf(QQuickItem& item, double across = 0.5, double down = 0.5);

    void tap(const QString& objectName);
    void tap(QPoint at);
    /// One finger goes from here to there in so many moves.
    void drag(QPoint from, QPoint to, int moves = 10);

    /// Another program's file is dragged over the window and let go of.
    void drop(const QString& path, QPoint at);

    /// Lets the program live for so long.
    void pass(double seconds);
    /// Whether it becomes true within some seconds.
    bool comesTo(const std::function<bool()>& truth, double seconds = 5);
    QImage picture() { return window().grabWindow(); }

  private:
    QQuickItem* find(const QString& objectName);

    OmbrixAppDelegate m_delegate;
    MainLoop m_loop;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<Fingers> m_fingers;
};
