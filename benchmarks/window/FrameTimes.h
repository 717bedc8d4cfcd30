#pragma once

#include <QElapsedTimer>
#include <QQuickWindow>
#include <vector>

/// The times between frames, in milliseconds, for as long as it lives.
class FrameTimes {
  public:
    explicit FrameTimes(QQuickWindow& window) {
        m_clock.start();
        m_counter = QObject::connect(
            &window, &QQuickWindow::frameSwapped, &window,
            [this] { m_ends.push_back(double(m_clock.nsecsElapsed()) * 1e-6); },
            Qt::DirectConnection);
    }
    ~FrameTimes() { QObject::disconnect(m_counter); }

    std::size_t count() const { return m_ends.size(); }
    std::vector<double> between() const {
        std::vector<double> times;
        for (std::size_t i = 1; i < m_ends.size(); ++i)
            times.push_back(m_ends[i] - m_ends[i - 1]);
        return times;
    }

  private:
    QElapsedTimer m_clock;
    std::vector<double> m_ends;
    QMetaObject::Connection m_counter;
};
