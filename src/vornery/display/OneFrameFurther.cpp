#include "OneFrameFurther.h"

#include <algorithm>
#include <limits>

#include "VornWaveSequence.h"

OneFrameFurther::OneFrameFurther(std::shared_ptr<WaveSequenceAccess> sound)
    : m_sound(std::move(sound)) {}

std::uint32_t OneFrameFurther::sampleCount() const {
    return m_sound->sampleCount();
}

const StreamDescription* OneFrameFurther::audioDescription() const {
    return m_sound->audioDescription();
}

WaveWindowList OneFrameFurther::retrieveWindowsAt(std::uint32_t at, std::uint32_t* count) const {
    const std::uint32_t asked = *count;
    const bool canBeMore = asked > 0 && asked < std::numeric_limits<std::uint32_t>::max() - at;
    std::uint32_t further = asked + (canBeMore ? 1 : 0);
    WaveWindowList list = m_sound->retrieveWindowsAt(at, &further);
    *count = std::min(asked, further);
    return list;
}

std::uint32_t OneFrameFurther::write(std::uint32_t frames, float* into) const {
    return m_sound->write(frames, into);
}

std::shared_ptr<WaveAccess> OneFrameFurther::sliceBlockFrom(std::uint32_t from,
                                                            std::uint32_t count) const {
    return m_sound->sliceBlockFrom(from, count);
}

std::shared_ptr<VornWave2> OneFrameFurther::flattenInto(const std::string& folder,
                                                        std::uint32_t channels) const {
    return m_sound->flattenInto(folder, channels);
}

std::shared_ptr<VornWaveSequence> OneFrameFurther::sliceFrom(std::uint32_t from,
                                                             std::uint32_t count) const {
    return m_sound->sliceFrom(from, count);
}
