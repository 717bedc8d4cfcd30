#include "editing/OldSounds.h"

#include <system_error>
#include <thread>

namespace {

constexpr double kLookSeconds = 0.1;
constexpr int kMostLooks = 20;  // whoever still has it then lets go of it

void letGo(std::vector<std::shared_ptr<const void>> sounds) {
    try {
        std::thread([kept = std::move(sounds)] {}).detach();
    } catch (const std::system_error&) {
        return;  // no thread to be had: here, then
    }
}

}  // namespace

void OldSounds::add(std::shared_ptr<const void> sound) {
    if (!sound)
        return;
    m_sounds.push_back({std::move(sound)});
    if (!m_looking)
        m_looking = RunLoop::main().callEvery(kLookSeconds, [this] { look(); });
}

void OldSounds::look() {
    std::vector<std::shared_ptr<const void>> ready;
    std::erase_if(m_sounds, [&](Old& old) {
        if (old.sound.use_count() > 1 && ++old.looks < kMostLooks)
            return false;
        ready.push_back(std::move(old.sound));
        return true;
    });
    if (!ready.empty())
        letGo(std::move(ready));
    if (!m_sounds.empty())
        return;
    RunLoop::main().cancel(m_looking);
    m_looking = 0;
}
