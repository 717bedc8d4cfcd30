#include "PeakGathering.h"

#include <algorithm>
#include <cmath>

#include "BackgroundWorkerTask.h"

namespace {

/// Of a window: floats from one frame to the next, and whether there is a second channel.
std::size_t strideOf(const WaveWindow& window) {
    return window.format == std::int32_t(WaveFormat::mono) ? 1 : 2;
}

bool isStereo(const WaveWindow& window) {
    return window.format == std::int32_t(WaveFormat::stereoInterleaved);
}

struct Frame {
    float first = 0, second = 0;
};

Frame frameOf(const WaveWindow& window, std::int64_t index) {
    const float* data = window.data + std::size_t(index) * strideOf(window);
    return {data[0], isStereo(window) ? data[1] : data[0]};
}

/// Frames of a window, and its neighbours' just before the first and behind the last: a position
/// between two windows needs them. At the ends of the sound the frame there once more.
class Neighbourhood {
  public:
    explicit Neighbourhood(const WaveWindow* window) : m_window(window) {}

    bool hasNext() const { return m_window[1].data != nullptr; }
    void next() {
        if (m_window->frameCount > 0)
            m_before = frameOf(*m_window, m_window->frameCount - 1);
        ++m_window;
    }
    std::int64_t frames() const { return m_window->frameCount; }
    bool stereo() const { return isStereo(*m_window); }

    Frame at(std::int64_t index) const {
        if (index < 0)
            return m_before;
        if (index < frames())
            return frameOf(*m_window, index);
        const WaveWindow* later = m_window + 1;
        while (later->data && later->frameCount == 0)
            ++later;
        return later->data ? frameOf(*later, 0) : frameOf(*m_window, frames() - 1);
    }

  private:
    const WaveWindow* m_window;
    Frame m_before;
};

float between(float a, float b, float part) {
    return (1.f - part) * a + part * b;
}

}  // namespace

void PeakGathering::include(int column, float sample) {
    float& peak = m_peaks[std::size_t(column)];
    float& poke = m_pokes[std::size_t(column)];
    // Written so that what is no number changes neither.
    peak = sample > peak ? sample : peak;
    poke = sample < poke ? sample : poke;
}

void PeakGathering::clearFrom(int column) {
    std::fill(m_peaks.begin() + column, m_peaks.end(), 0.f);
    std::fill(m_pokes.begin() + column, m_pokes.end(), 0.f);
}

void PeakGathering::decimate(const WaveWindow* window, std::int64_t span, std::int64_t offset,
                             std::int64_t count) {
    const double columnsPerFrame = double(kColumns) / double(span);
    std::int64_t stride = 1;
    double step = columnsPerFrame;
    for (; step < 0.2; step *= 2)
        stride *= 2;
    if (count + 1 == stride)
        return;
    double x = double(offset) * columnsPerFrame;
    std::int64_t i = 0;
    for (std::int64_t taken = 0;;) {
        const int column = int(x);
        if (column >= kColumns || m_task.backgroundWorkCancelled())
            return;
        if (i < window->frameCount) {  // a list may begin with, or hold, windows of no frames
            const Frame frame = frameOf(*window, i);
            include(column, frame.first);
            include(column, frame.second);
        }
        i += stride;
        if (i >= window->frameCount) {
            if (!window[1].data)
                return clearFrom(column + 1);
            ++window;
            i = 0;  // the rest of the stride is not carried over
        }
        x += step;
        taken += stride;
        if (taken >= count - stride + 1)
            return;
    }
}

void PeakGathering::interpolate(const WaveWindow* windows, std::int64_t span) {
    const double framesPerColumn = double(span) / kColumns;
    Neighbourhood window(windows);
    double position = 0;  // in the window; from -1 to 0 it lies between the one before and this one
    for (int column = 0; column < kColumns; ++column, position += framesPerColumn) {
        if (m_task.backgroundWorkCancelled())
            return;
        while (position + 1 >= double(window.frames())) {
            if (!window.hasNext())
                return clearFrom(column);
            position -= double(window.frames());
            window.next();
        }
        const auto i = std::int64_t(position);  // towards 0: before the window it extrapolates
        const float part = float(position - double(i));
        const Frame here = window.at(i), right = window.at(i + 1);
        const float a = between(here.first, right.first, part);
        const float b = window.stereo() ? between(here.second, right.second, part) : a;
        float& peak = m_peaks[std::size_t(column)];
        float& poke = m_pokes[std::size_t(column)];
        const float high = std::fmax(a, b), low = std::fmin(a, b);
        peak = high > peak ? high : peak;
        poke = low > poke ? low : poke;  // the highest here too: a line, not an area
    }
}
