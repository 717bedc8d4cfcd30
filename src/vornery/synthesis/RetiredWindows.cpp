#include "RetiredWindows.h"

namespace {
constexpr double kKeptSeconds = 0.5;
}

RetiredWindows::~RetiredWindows() {
    for (const auto& [number, retired] : m_retired)
        RunLoop::main().cancel(retired.token);
}

void RetiredWindows::retire(WaveWindowList list, std::shared_ptr<WaveSequenceAccess> sound,
                            std::int32_t posting) {
    if (!list && !sound)
        return;
    const std::uint64_t number = m_next++;
    m_retired[number] = {std::move(sound), std::move(list), posting, reviewLater(number)};
}

RunLoop::Token RetiredWindows::reviewLater(std::uint64_t number) {
    return RunLoop::main().callAfter(kKeptSeconds, [this, number] { review(number); });
}

void RetiredWindows::review(std::uint64_t number) {
    const auto retired = m_retired.find(number);
    if (m_outOfReach(retired->second.posting))
        m_retired.erase(retired);
    else
        retired->second.token = reviewLater(number);
}
