#pragma once

#include <memory>
#include <vector>

#include "runloop/RunLoop.h"

/// Where sounds wait to be let go of. To give 20 minutes of samples back to the system takes longer
/// than a frame of the screen, so it is done on a thread, once nobody else has them. [main]
class OldSounds {
  public:
    OldSounds() = default;
    ~OldSounds() { RunLoop::main().cancel(m_looking); }
    OldSounds(const OldSounds&) = delete;
    OldSounds& operator=(const OldSounds&) = delete;

    /// A sound, a wave or whatever else holds samples; may be null.
    void add(std::shared_ptr<const void> sound);

  private:
    struct Old {
        std::shared_ptr<const void> sound;
        int looks = 0;
    };
    void look();

    std::vector<Old> m_sounds;
    RunLoop::Token m_looking = 0;  // 0: nothing waits
};
