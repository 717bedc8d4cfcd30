#pragma once

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "Fingers.h"
#include "ShownItem.h"
#include "keyboard/OverviewScroller.h"
#include "keyboard/ScrollingKeyboardView.h"

/// A shown keyboard with its overview and the computer's keys, and what it has played.
class Piano {
  public:
    explicit Piano(const std::string& properties = "width: 1280")
        : m_shown(ShownItem::fromQml("import QtQuick; import Ombrix.Views\n PianoKeyboard { " +
                                     properties + "; height: implicitHeight }")) {
        QObject::connect(&keys(), &ScrollingKeyboardView::tinkleIvory,
                         [this](int key) { note("+", key, 1); });
        QObject::connect(&keys(), &ScrollingKeyboardView::untinkleIvory,
                         [this](int key) { note("-", key, -1); });
    }

    QQuickItem& item() { return m_shown.as<QQuickItem>(); }
    QQuickWindow& window() { return m_shown.window(); }
    QImage picture() { return m_shown.picture(); }
    ScrollingKeyboardView& keys() { return *item().findChild<ScrollingKeyboardView*>("keyboard"); }
    OverviewScroller& overview() { return *item().findChild<OverviewScroller*>("miniKeyboard"); }
    PianoKeyButton& key(int index) {
        return *keys().keyboardButtons()[static_cast<std::size_t>(index)];
    }
    /// The window's point at a place of the content, which must be in sight.
    QPoint at(qreal x, qreal y) { return keys().mapToScene({x - keys().contentX(), y}).toPoint(); }
    /// On the lower part of a white key, where no black key is.
    QPoint onWhite(int index) { return at(key(index).x() + key(index).width() / 2, 200); }
    QPoint onBlack(int index) { return at(key(index).x() + key(index).width() / 2, 60); }

    /// "+39 -39 ": since the last call.
    std::string played() { return std::exchange(m_played, ""); }
    /// Keys that sound: pressed, and not released since.
    std::string sounding() {
        std::string list;
        for (std::size_t key = 0; key < m_sounds.size(); ++key)
            list += m_sounds[key] ? std::to_string(key) + " " : "";
        return list;
    }
    std::string lit() {
        std::string list;
        for (int index = 0; index < kKeyCount; ++index)
            list += key(index).highlighted() ? std::to_string(index) + " " : "";
        return list;
    }

  private:
    void note(const char* what, int key, int change) {
        m_played += what + std::to_string(key) + " ";
        m_sounds[static_cast<std::size_t>(key)] = change > 0;
    }

    std::string m_played;
    std::array<bool, kKeyCount> m_sounds{};
    ShownItem m_shown;
};
