#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "BackgroundWorker.h"
#include "ReusePool.h"
#include "StripGeometry.h"
#include "WaveTileLayer.h"

class WaveTilesDelegate {
  public:
    virtual ~WaveTilesDelegate() = default;
    /// Layers came, went, moved, fade, or want to be drawn: show `layers` anew at the next frame.
    virtual void tilesChanged() {}
};

/// How the visible range changes.
enum class WaveUpdate : int {
    refresh = 0,       // another sound, size or range: all tiles anew
    scroll = 1,        // the same scale: tiles move, and those that leave come in on the other side
    stretch = 2,       // tiles only follow, as for any other number; a refresh is to come
    refreshAgain = 4,  // as refresh
};

/// The strip of tiles below a wave view: which stretches of the sound are shown by which tile, when
/// each is gathered, drawn, faded in and let go of. Old tiles stay until all new ones are there, so
/// the strip is never blank. Points of a layer whose left edge is frame `viewStartIndex`; time runs
/// by RunLoop::main. [main]
///
/// Three tiles of 1024 points cover a view of up to 1536 with half a tile to spare; wider views,
/// and scales at which a tile's whole frames fall short of 1024 points, have as many as it takes.
///
/// How many there can be: old tiles stay for 0.6 s, and a pinch asks for new ones at every frame.
/// While more than two strips are shown, a refresh waits until the one before is in and then takes
/// the newest range, and the new tiles take the place, and the opacity so far, of those that were
/// still fading in. So at most four strips are shown; two more may be with the worker.
class WaveTiles : private BackgroundWorkerDelegate,
                  private ReusePoolDelegate<WaveTileLayer>,
                  private WaveTileLayerDelegate {
  public:
    using Tile = std::shared_ptr<WaveTileLayer>;

    /// The delegate is not retained.
    explicit WaveTiles(WaveTilesDelegate& delegate);
    ~WaveTiles() override;
    WaveTiles(const WaveTiles&) = delete;
    WaveTiles& operator=(const WaveTiles&) = delete;

    /// Another sound, whose tiles fade in over the old ones; null shows nothing at once. Call
    /// `backgroundRefresh` when one that was loading can be read.
    void setWave(std::shared_ptr<WaveSequenceAccess> wave);
    /// Points. What is shown is stretched until the new tiles are in.
    void setBounds(double width, double height);
    void setWaveColour(const TileColour& colour);
    void setBackgroundGradient(const std::optional<TileGradient>& gradient);
    /// Fades take no time then.
    void setReduceMotion(bool reduce);
    /// The frames at the view's left and right edge.
    void setViewFromI(std::int32_t start, std::int32_t stop, WaveUpdate update);
    /// All tiles anew, soon; requests of one turn of the main loop are one.
    void backgroundRefresh();
    /// Lets go of spare tiles.
    void didReceiveMemoryWarning();

    std::int32_t viewStartIndex() const { return m_view.start; }
    std::int32_t viewStopIndex() const { return m_view.stop; }
    /// Bottom to top. Draw those that need display, hidden or not, and show those that are not
    /// hidden at their opacity.
    const std::vector<Tile>& layers() const { return m_layers; }
    /// Whether a fade is under way, so that frames are wanted one after the other.
    bool animating() const;
    /// Whether what is wanted has been gathered and drawn, and covers the view.
    bool complete() const;

  private:
    // BackgroundWorkerDelegate, ReusePoolDelegate, WaveTileLayerDelegate
    void task(BackgroundWorker& worker, const std::shared_ptr<BackgroundWorkerTask>& task,
              bool finished) override;
    Tile reusePoolNeedsItem(ReusePool<WaveTileLayer>& pool) override;
    void waveTilefinishedRendering(WaveTileLayer& tile) override;

    void performBackgroundRefresh();
    void giveUpGathers();
    bool mustWait() const;
    void supersedeTiles();
    void placeStrip();
    std::uint64_t placeLayerAt(double x, double width, std::int64_t from, std::int64_t to);
    void waveTileRegenerated(const Tile& tile);
    void removeOldLayers();
    void removeAfterFade(const Tile& tile);
    void oldLayerRemoved(const Tile& tile);
    void removeAll();
    void recycle(const Tile& tile);
    void wrapTiles();
    void moveTiles();

    std::vector<Tile> tilesNamed(const char* name) const;
    bool isGathering() const;
    bool isCrowded() const;
    bool coversView() const;
    TileFrame frameOf(const WaveTileLayer& tile) const;
    void callAfter(double seconds, std::function<void(WaveTiles&)> call);

    WaveTilesDelegate& m_delegate;
    std::shared_ptr<WaveSequenceAccess> m_wave;  // reaches one frame further than the view's
    StripGeometry m_view;
    double m_height = 0;  // of the view, points
    TileColour m_waveColour;
    std::optional<TileGradient> m_backgroundGradient;
    std::vector<Tile> m_layers;
    std::vector<Tile> m_gathering;  // with the worker; cancelled ones too
    ReusePool<WaveTileLayer> m_layerPool;
    std::int64_t m_tiles = 3;          // of the strip that was placed last
    std::uint64_t m_firstOfStrip = 0;  // contentId of its first tile; later ones are not less

    bool m_refreshNeeded = false;
    bool m_isScheduled = false;
    bool m_refreshWaits = false;            // for what is under way
    bool m_cancelledInVain = false;         // the last strip, and none was gathered since
    std::optional<double> m_takenOverFade;  // start of the fade that the newest tiles go on with
    bool m_reduceMotion = false;

    std::shared_ptr<WaveTiles*> m_self;  // gone with this, for calls that come later
    std::unique_ptr<BackgroundWorker> m_worker;
};
