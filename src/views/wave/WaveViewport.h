#pragma once

#include <cstdint>

/// Which stretch of a sound lies in how many points: zoomed and scrolled, but never outside the
/// sound and never less than 16 frames of it (a shorter one is shown whole). Places between frames
/// are kept, so that slow drags at a deep zoom do not stick; `start` and `stop` are whole frames,
/// whose distance depends on the scale alone. [any thread, one at a time]
class WaveViewport {
  public:
    static constexpr int kFewestFrames = 16;

    /// Points; the stretch stays.
    void setWidth(double points) { m_width = points; }
    double width() const { return m_width; }

    /// Another sound of so many frames: all of it is shown.
    void setLength(std::int32_t frames);
    /// The same sound, now of so many frames: the same stretch as far as there is one; all of it if
    /// all was shown.
    void changeLength(std::int32_t frames);
    std::int32_t length() const { return m_length; }

    /// From one frame to another, in either order.
    void show(double from, double to);
    void showAll() { show(0, m_length); }
    bool showsAll() const { return m_span >= m_length; }
    /// Closer for a factor above 1. What lies at this point stays there, where the sound's ends
    /// allow.
    void zoomAbout(double x, double factor);
    /// The sound moves to the right for positive points. False when it is at its end.
    bool scrollBy(double points);

    /// At the left edge; between frames too.
    double first() const { return m_first; }
    /// Frames between the edges.
    double span() const { return m_span; }
    double framesPerPoint() const { return m_width > 0 ? m_span / m_width : 0; }
    double xOf(double frame) const;
    /// Kept within the sound, its end included.
    double frameAt(double x) const;

    /// The same in whole frames.
    std::int32_t start() const;
    std::int32_t stop() const { return start() + wholeSpan(); }

  private:
    std::int32_t wholeSpan() const;
    void place(double first, double span);

    std::int32_t m_length = 0;
    double m_width = 0;
    double m_first = 0;
    double m_span = 0;
};
