#pragma once

#include <unordered_map>
#include <vector>

#include "WaveTiles.h"
#include "wave/WaveViewNode.h"
#include "wave/WaveViewport.h"

/// The pictures of the tiles that are there: each is drawn when it asks to be, and kept as long as
/// its tile shows that content. [main]
class TilePictures {
  public:
    /// Draws what wants to be drawn. @param scale pixels in a point
    void draw(const WaveTiles& tiles, double scale);
    /// Bottom to top, without those that cannot be seen; on whole pixels where they are not
    /// stretched. @param height points
    std::vector<ShownTile> shown(const WaveTiles& tiles, const WaveViewport& viewport,
                                 double height, double scale) const;
    /// Memory of the pictures, bytes.
    std::size_t size() const;

  private:
    struct Kept {
        std::uint64_t content = 0;
        QImage picture;
    };
    void drawOne(WaveTileLayer& tile, double scale);

    std::unordered_map<const WaveTileLayer*, Kept> m_kept;
};
