#include "wave/WavePeaks.h"

#include <algorithm>
#include <cstddef>

#include "VornWave2.h"

namespace {

// Between two looks at whether it is still wanted: well below a millisecond of work.
constexpr std::uint64_t kFramesAtOnce = 1 << 18;

/// Frames [first, end) that one column stands for; at least one, also where there are more columns
/// than frames.
struct Span {
    std::uint64_t first;
    std::uint64_t end;
};

Span spanOf(std::uint64_t column, std::uint64_t columns, std::uint64_t frames) {
    const std::uint64_t first = column * frames / columns;
    return {first, std::max(first + 1, (column + 1) * frames / columns)};
}

/// Samples of a window's frames: how many for each, and from one to the next.
void include(WavePeak& peak, const WaveWindow& window, std::uint64_t from, std::uint64_t count) {
    const auto format = static_cast<WaveFormat>(window.format);
    const std::size_t step = format == WaveFormat::oneOfStereo ? 2 : 1;
    const std::size_t perFrame = format == WaveFormat::mono ? 1 : 2;
    const float* const first = window.data + from * perFrame;
    const float* const end = first + count * perFrame;
    float low = peak.low;
    float high = peak.high;
    // Written so that what is no number changes neither.
    for (const float* sample = first; sample < end; sample += step) {
        low = *sample < low ? *sample : low;
        high = *sample > high ? *sample : high;
    }
    peak = {std::max(low, -1.f), std::min(high, 1.f)};
}

/// Walks along the windows of a sound; spans come in order, and the last frame of one may be the
/// first of the next.
class Walk {
  public:
    explicit Walk(const WaveWindow* windows) : m_window(windows) {}

    WavePeak peakOf(Span span, const std::atomic<bool>& cancelled) {
        WavePeak peak{2, -2};
        while (span.first < span.end && !cancelled && forward(span.first)) {
            const std::uint64_t from = span.first - m_start;
            const std::uint64_t count = std::min(
                {span.end - span.first, m_window->frameCount - from, kFramesAtOnce});
            include(peak, *m_window, from, count);
            span.first += count;
        }
        return peak.low > peak.high ? WavePeak() : peak;
    }

  private:
    bool forward(std::uint64_t frame) {
        while (m_window->data && frame >= m_start + m_window->frameCount)
            m_start += (m_window++)->frameCount;
        return m_window->data != nullptr;
    }

    const WaveWindow* m_window;
    std::uint64_t m_start = 0;  // of the window in the sound, frames
};

/// Neighbours that do not touch meet half-way.
void join(std::vector<WavePeak>& peaks) {
    for (std::size_t i = 1; i < peaks.size(); ++i) {
        WavePeak& before = peaks[i - 1];
        WavePeak& now = peaks[i];
        if (now.low > before.high)
            before.high = now.low = (before.high + now.low) / 2;
        else if (now.high < before.low)
            before.low = now.high = (before.low + now.high) / 2;
    }
}

void waitForWaves(const VornWaveSequence& sound) {
    for (const auto& block : sound.blocks()) {
        if (block->hasWave())
            block->waveOrNil()->waitUntilLoaded();
    }
}

}  // namespace

std::vector<WavePeak> WavePeaks::of(const VornWaveSequence& sound, int columns,
                                    const std::atomic<bool>& cancelled) {
    waitForWaves(sound);
    std::uint32_t frames = sound.sampleCount();
    const WaveWindowList windows = sound.retrieveWindowsAt(0, &frames);
    if (!windows || frames == 0 || columns <= 0)
        return {};
    Walk walk(windows.get());
    std::vector<WavePeak> peaks(static_cast<std::size_t>(columns));
    for (std::size_t i = 0; i < peaks.size(); ++i)
        peaks[i] = walk.peakOf(spanOf(i, peaks.size(), frames), cancelled);
    if (cancelled)
        return {};
    join(peaks);
    return peaks;
}
