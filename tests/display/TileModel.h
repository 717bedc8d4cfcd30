#pragma once

#include <algorithm>
#include <array>
#include <cmath>

#include "PieceSound.h"

/// The columns of a tile, the slow obvious way: over one flat list of frames.
struct TileModel {
    struct Frame {
        float a, b;
    };
    struct Window {
        std::size_t first;  // in the flat list
        std::int64_t frames;
        std::int32_t format;
    };
    std::array<float, 1024> peaks, pokes;

    TileModel(const WaveSequenceAccess& sound, std::int32_t start, std::int32_t stop,
              float height) {
        peaks.fill(1 / height);
        pokes.fill(-1 / height);
        const std::int64_t n = std::int64_t{stop} - start;
        if (stop < 1 || n < 1)
            return;
        auto count = std::uint32_t(start < 0 ? stop : n);
        const auto list = sound.retrieveWindowsAt(std::uint32_t(std::max(start, 0)), &count);
        if (!list || !list[0].data)
            return;
        flatten(list.get());
        const double r = 1024. / double(n);
        if (r <= 1)
            decimate(r, start < 0 ? -double(start) : 0, count);
        else
            interpolate(r);
    }

  private:
    void flatten(const WaveWindow* list) {
        for (; list->data; ++list) {
            windows.push_back({frames.size(), list->frameCount, list->format});
            for (std::size_t i = 0; i < list->frameCount; ++i) {
                const float* x = list->data + i * (list->format == 0 ? 1 : 2);
                frames.push_back({x[0], list->format == 1 ? x[1] : x[0]});
            }
        }
    }
    void end(std::size_t column) {
        for (; column < 1024; ++column)
            peaks[column] = pokes[column] = 0;
    }
    void decimate(double r, double offset, std::int64_t count) {
        std::int64_t s = 1;
        double d = r;
        for (; d < 0.2; d += d)
            s += s;
        if (count + 1 == s)
            return;
        std::int64_t taken = 0;
        double x = offset * r;
        for (std::size_t w = 0; w < windows.size(); ++w) {
            std::int64_t i = 0;
            do {
                const auto k = std::size_t(x);
                if (k > 1023)
                    return;
                if (i < windows[w].frames) {
                    const Frame frame = frames[windows[w].first + std::size_t(i)];
                    for (const float v : {frame.a, frame.b}) {
                        peaks[k] = std::fmax(peaks[k], v);
                        pokes[k] = std::fmin(pokes[k], v);
                    }
                }
                i += s;
                if (i >= windows[w].frames && w + 1 == windows.size())
                    return end(k + 1);
                x += d;
                taken += s;
                if (taken >= count - s + 1)
                    return;
            } while (i < windows[w].frames);
        }
    }
    /// Positions before a window's first frame are those of the window before.
    Frame frameAt(std::int64_t index) const {
        return frames[std::size_t(
            std::clamp<std::int64_t>(index, 0, std::int64_t(frames.size()) - 1))];
    }
    void interpolate(double r) {
        double p = 0;
        std::size_t w = 0;
        for (std::size_t k = 0; k < 1024; ++k, p += 1 / r) {
            for (; p + 1 >= double(windows[w].frames); ++w) {
                if (w + 1 == windows.size())
                    return end(k);
                p -= double(windows[w].frames);
            }
            const int i = int(p);
            const float f = float(p - i);
            const Frame x = frameAt(std::int64_t(windows[w].first) + i);
            const Frame y = frameAt(std::int64_t(windows[w].first) + i + 1);
            const float a = (1 - f) * x.a + f * y.a;
            const float b = windows[w].format == 1 ? (1 - f) * x.b + f * y.b : a;
            peaks[k] = std::fmax(peaks[k], std::fmax(a, b));
            pokes[k] = std::fmax(pokes[k], std::fmin(a, b));
        }
    }

    std::vector<Frame> frames;
    std::vector<Window> windows;
};
