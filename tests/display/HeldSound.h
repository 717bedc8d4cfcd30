#pragma once

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "PieceSound.h"

/// A sound whose reading waits for the test, and whose memory is freed with it. Says where it was
/// freed.
class HeldSound final : public PieceSound {
  public:
    struct Life {
        std::atomic<bool> isHeld{true};
        std::atomic<int> readers{0};
        std::atomic<std::thread::id> freedOn{};
        void awaitReaders(int count) const {
            while (readers < count)
                std::this_thread::yield();
        }
    };

    explicit HeldSound(std::shared_ptr<Life> life, std::size_t frames = 100000)
        : PieceSound({{0, std::vector<float>(frames, 0.5f)}}), m_life(std::move(life)) {}
    ~HeldSound() override { m_life->freedOn = std::this_thread::get_id(); }
    WaveWindowList retrieveWindowsAt(std::uint32_t at, std::uint32_t* count) const override {
        ++m_life->readers;
        while (m_life->isHeld)
            std::this_thread::yield();
        return PieceSound::retrieveWindowsAt(at, count);
    }

  private:
    std::shared_ptr<Life> m_life;
};
