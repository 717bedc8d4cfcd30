#include "wave/WaveViewport.h"

#include <algorithm>
#include <cmath>
#include <utility>

void WaveViewport::setLength(std::int32_t frames) {
    m_length = std::max(0, frames);
    showAll();
}

void WaveViewport::changeLength(std::int32_t frames) {
    const bool all = showsAll();
    m_length = std::max(0, frames);
    all ? showAll() : place(m_first, m_span);
}

void WaveViewport::show(double from, double to) {
    if (from > to)
        std::swap(from, to);
    const double centre = (from + to) / 2;
    const double span = std::max(to - from, double(std::min(kFewestFrames, m_length)));
    place(centre - span / 2, span);
}

void WaveViewport::zoomAbout(double x, double factor) {
    if (!(factor > 0) || m_width <= 0)
        return;
    const double across = x / m_width;
    const double frame = m_first + across * m_span;
    const double least = std::min(kFewestFrames, m_length);
    const double span = std::clamp(m_span / factor, least, double(m_length));
    place(frame - across * span, span);
}

bool WaveViewport::scrollBy(double points) {
    const double wanted = m_first - points * framesPerPoint();
    place(wanted, m_span);
    return m_first == wanted;
}

double WaveViewport::xOf(double frame) const {
    return m_span > 0 ? (frame - m_first) / m_span * m_width : 0;
}

double WaveViewport::frameAt(double x) const {
    return std::clamp(m_first + x * framesPerPoint(), 0., double(m_length));
}

std::int32_t WaveViewport::start() const {
    const auto nearest = static_cast<std::int32_t>(std::lround(m_first));
    return std::clamp(nearest, 0, m_length - wholeSpan());
}

std::int32_t WaveViewport::wholeSpan() const {
    return static_cast<std::int32_t>(std::lround(m_span));
}

/// Not-a-number leaves all as it is.
void WaveViewport::place(double first, double span) {
    if (std::isnan(first) || std::isnan(span))
        return;
    m_span = std::clamp(span, double(std::min(kFewestFrames, m_length)), double(m_length));
    m_first = std::clamp(first, 0., m_length - m_span);
}
