#pragma once

#include <unordered_map>
#include <vector>

#include "WaveTiles.h"
#include "wave/WaveViewNode.h"
#include "wave/WaveViewport.h"

/// The pictures of the tiles that can be seen: each is drawn when it asks to be, or comes into
/// sight, and kept as long as its tile shows that content. [main]
class TilePictures {
  public:
    /// Bytes of all pictures above which the lowest, which newer ones are about to cover, are let
    /// go of.
    static constexpr std::size_t kMostMemory = 16'000'000;

    /// Draws what is to be drawn. @param scale pixels in a point
    void draw(const WaveTiles& tiles, const WaveViewport& viewport, double scale);
    /// Bottom to top, without those that cannot be seen; on whole pixels where they are not
    /// stretched. @param height points
    std::vector<ShownTile> shown(const WaveTiles& tiles, const WaveViewport& viewport,
                                 double height, double scale) const;
    /// Of all pictures, bytes.
    std::size_t size() const;

  private:
    struct Kept {
        std::uint64_t content = 0;
        QImage picture;
    };
    void drawOne(WaveTileLayer& tile, double scale);
    void forgetGone(const WaveTiles& tiles);
    void boundMemory(const WaveTiles& tiles);

    std::unordered_map<const WaveTileLayer*, Kept> m_kept;
};
