#include "audiounits/FilterCascade.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr std::uint32_t kGlideFrames = 512;
constexpr double kSilence = 1e-9;  // -180 dB
}  // namespace

FilterCascade::FilterCascade(const Curve& curve) : m_now(curve) {}

void FilterCascade::glideTo(const Curve& curve) noexcept {
    m_from = m_now;
    m_to = &curve;
    m_glideLeft = kGlideFrames;
}

void FilterCascade::glide() noexcept {
    if (--m_glideLeft == 0) {
        m_now = *m_to;
        return;
    }
    const double part = 1 - static_cast<double>(m_glideLeft) / kGlideFrames;
    for (std::size_t i = 0; i < kStages; ++i) {
        const Biquad& from = m_from[i];
        const Biquad& to = (*m_to)[i];
        m_now[i] = {std::lerp(from.b0, to.b0, part), std::lerp(from.b1, to.b1, part),
                    std::lerp(from.b2, to.b2, part), std::lerp(from.a1, to.a1, part),
                    std::lerp(from.a2, to.a2, part)};
    }
}

// Transposed direct form II, which takes changing coefficients well.
FilterCascade::Pair FilterCascade::next(const Curve& curve, States& states, Pair frame) noexcept {
    for (std::size_t i = 0; i < kStages; ++i) {
        const Biquad& filter = curve[i];
        const Pair out = filter.b0 * frame + states[i].first;
        states[i].first = filter.b1 * frame - filter.a1 * out + states[i].second;
        states[i].second = filter.b2 * frame - filter.a2 * out;
        frame = out;
    }
    return frame;
}

void FilterCascade::process(std::span<float> left, std::span<float> right) noexcept {
    States states = m_states;
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (m_glideLeft > 0)
            glide();
        const Pair out = next(m_now, states, Pair{left[i], right[i]});
        left[i] = static_cast<float>(out[0]);
        right[i] = static_cast<float>(out[1]);
    }
    m_states = states;
}

bool FilterCascade::resting() const noexcept {
    const auto quiet = [](const Pair& pair) {
        return std::abs(pair[0]) < kSilence && std::abs(pair[1]) < kSilence;
    };
    return m_glideLeft == 0 && std::ranges::all_of(m_states, [&](const State& state) {
               return quiet(state.first) && quiet(state.second);
           });
}
