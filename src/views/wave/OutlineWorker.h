#pragma once

#include <QImage>
#include <QThreadPool>
#include <atomic>
#include <functional>
#include <memory>

#include "VornWaveSequence.h"
#include "wave/OutlinePicture.h"

/// Makes outlines on a thread of its own, one at a time; a new one takes the place of what is still
/// being made. Sounds are let go of on the main thread. [main]
class OutlineWorker {
  public:
    using Sound = std::shared_ptr<VornWaveSequence>;
    /// Hears the picture, null where there is nothing to see. [main]
    using Done = std::function<void(const QImage& picture)>;

    OutlineWorker();
    /// Waits for at most one pass over a quarter of a million frames, or for a load under way.
    ~OutlineWorker();

    /// Columns are pixels.
    void make(Sound sound, int columns, const OutlinePicture::Style& style, Done done);
    /// What is being made is not wanted any more.
    void cancel();

  private:
    QThreadPool m_thread;
    std::shared_ptr<std::atomic<bool>> m_cancelled;
};
