#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

#include "BackgroundWorkerTask.h"
#include "TileContext.h"
#include "TileFade.h"
#include "WaveAccess.h"

class WaveTileLayer;

class WaveTileLayerDelegate {
  public:
    virtual ~WaveTileLayerDelegate() = default;
    /// The tile has been drawn. [main]
    virtual void waveTilefinishedRendering(WaveTileLayer& tile) = 0;
};

/// One stretch of a sound as a strip of 1024 columns, each of the range of its samples, which are
/// gathered on a worker thread and drawn once they are there. Its name is its state. While it is
/// "Pending Gather" the worker writes the peaks and reads stretch and height, and nobody else
/// touches them; the report on the main thread hands them back. [main] where not said otherwise.
class WaveTileLayer : public BackgroundWorkerCancellableTask,
                      public std::enable_shared_from_this<WaveTileLayer> {
  public:
    static constexpr int kColumns = 1024;
    using Columns = std::array<float, kColumns>;

    // Names, compared by identity.
    static const char* const freshlyMade;
    static const char* const pendingGather;
    static const char* const pendingRender;
    static const char* const normal;
    static const char* const outOfDate;
    static const char* const removingOutOfSight;  // "Removing [os]"
    static const char* const removingOutOfDate;   // "Removing [ood]"

    /// As high as its peaks are gathered and drawn, points.
    explicit WaveTileLayer(double boundsHeight = 0);
    /// For display: colour, gradient, delegate, stretch, sound and peaks, not the state.
    WaveTileLayer(const WaveTileLayer& shown);
    WaveTileLayer& operator=(const WaveTileLayer&) = delete;
    ~WaveTileLayer() override;
    /// Tiles that live in this process. [any thread]
    static int liveTiles();

    const char* name() const { return m_name; }
    void setName(const char* name) { m_name = name; }
    bool isRegularLayer() const { return m_name == normal; }
    bool isOutOfDate() const { return m_name == outOfDate; }
    /// Cancels a gather too. What has been drawn may still be shown.
    void markOutOfDate();

    const TileColour& drawColour() const { return m_theDrawColour; }
    void setDrawColour(const TileColour& colour) { m_theDrawColour = colour; }
    const std::optional<TileGradient>& backgroundGradient() const { return m_backgroundGradient; }
    /// With one the tile is opaque.
    void setBackgroundGradient(const std::optional<TileGradient>& gradient);
    bool isOpaque() const { return m_backgroundGradient.has_value(); }
    /// Not retained.
    WaveTileLayerDelegate* delegate2() const { return m_delegate2; }
    void setDelegate2(WaveTileLayerDelegate* delegate) { m_delegate2 = delegate; }

    /// Frames of the sound, [start, stop); may lie before its first and behind its last.
    std::int32_t start() const { return m_start; }
    std::int32_t stop() const { return m_stop; }
    void setStart(std::int32_t start) { setStretch(start, m_stop); }
    void setStop(std::int32_t stop) { setStretch(m_start, stop); }
    void setStretch(std::int32_t start, std::int32_t stop);
    /// [any thread]
    std::shared_ptr<WaveSequenceAccess> wave() const;
    /// Also while it is gathered: the gather goes on with the sound that it began with, which is
    /// let go of here or by the next call, never by the worker.
    void setWave(std::shared_ptr<WaveSequenceAccess> wave);

    /// Highest sample of each column, and the lowest.
    const Columns& peaks() const { return m_peaks; }
    const Columns& pokes() const { return m_pokes; }
    /// When it became "Pending Render": seconds of Clock::now.
    double pendingSince() const { return m_pendingSince; }
    void setPendingSince(double seconds) { m_pendingSince = seconds; }

    /// Reads the sound: at most about five frames a column. A sound without windows, and what lies
    /// before its start, is a hairline; behind its end there is nothing. [worker] Allocates no more
    /// than the list of windows.
    void gatherPeaks();
    void doBackgroundWork() override { gatherPeaks(); }

    /// Draws the whole content, and tells the delegate. Nothing at all for a tile that is out of
    /// date: what is shown of it was drawn before. [any thread while the main thread waits]
    void drawInContext(TileContext& context);
    /// It has been drawn: the delegate is told from RunLoop::main. Does not wait. [any thread]
    void renderingDone();
    /// Wants to be drawn, also while it is hidden or its opacity is 0. [any thread]
    bool needsDisplay() const { return m_needsDisplay; }
    void setNeedsDisplay() { m_needsDisplay = true; }
    /// What it shows, by a number that no other content of any tile has, so that a picture of it
    /// can be kept: another one for each stretch.
    std::uint64_t contentId() const { return m_contentId; }

    /// Where it lies in the view's layer. Its 1024 columns fill the width, its height the height.
    const TileFrame& frame() const { return m_frame; }
    void setFrame(const TileFrame& frame) { m_frame = frame; }
    double boundsHeight() const { return m_boundsHeight; }
    bool hidden() const { return m_hidden; }
    void setHidden(bool hidden) { m_hidden = hidden; }
    /// 0 to 1; seconds of Clock::monotonic.
    double opacityAt(double now) const { return m_fade.at(now); }
    const TileFade& fade() const { return m_fade; }
    void setFade(const TileFade& fade) { m_fade = fade; }

  private:
    const WaveSequenceAccess* beginReading();
    void endReading();
    void gatherFrom(const WaveSequenceAccess& sound, std::int64_t span);
    void drawColumns(TileContext& context) const;

    TileColour m_theDrawColour;
    std::optional<TileGradient> m_backgroundGradient;
    WaveTileLayerDelegate* m_delegate2 = nullptr;
    std::int32_t m_start = 0;
    std::int32_t m_stop = 0;
    std::shared_ptr<WaveSequenceAccess> m_wave;  // under the mutex
    Columns m_peaks{};
    Columns m_pokes{};
    double m_pendingSince = 0;

    mutable std::mutex m_waveMutex;
    std::shared_ptr<WaveSequenceAccess> m_read;  // by the gather under way or the last one
    bool m_isReading = false;                    // both under the mutex
    const char* m_name = freshlyMade;
    double m_boundsHeight;
    TileFrame m_frame;
    TileFade m_fade;
    std::uint64_t m_contentId = 0;
    std::atomic<bool> m_needsDisplay{false};
    bool m_hidden = false;
};
