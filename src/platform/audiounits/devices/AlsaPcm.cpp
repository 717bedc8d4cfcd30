#include "audiounits/devices/AlsaPcm.h"

#include <algorithm>
#include <cerrno>

#include "audiounits/StreamDescription.h"

namespace {
constexpr snd_pcm_uframes_t kPeriodsInBuffer = 2;
}

AlsaPcm::AlsaPcm(const AlsaLibrary& alsa, snd_pcm_t* pcm, snd_pcm_stream_t direction)
    : m_alsa(alsa), m_pcm(pcm), m_direction(direction) {}

AlsaPcm::~AlsaPcm() {
    m_alsa.snd_pcm_close(m_pcm);
}

std::unique_ptr<AlsaPcm> AlsaPcm::open(const std::string& name, snd_pcm_stream_t direction,
                                       std::uint32_t periodFrames, int& error) {
    const AlsaLibrary* const alsa = AlsaLibrary::get();
    snd_pcm_t* pcm = nullptr;
    error = alsa ? alsa->snd_pcm_open(&pcm, name.c_str(), direction, SND_PCM_NONBLOCK) : -ENOENT;
    if (error < 0)
        return nullptr;
    std::unique_ptr<AlsaPcm> opened(new AlsaPcm(*alsa, pcm, direction));
    error = opened->configure(periodFrames);
    return error < 0 ? nullptr : std::move(opened);
}

int AlsaPcm::configure(std::uint32_t periodFrames) {
    snd_pcm_hw_params_t* parameters = nullptr;
    if (m_alsa.snd_pcm_hw_params_malloc(&parameters) < 0)
        return -ENOMEM;
    int result = chooseHardware(parameters, periodFrames);
    m_alsa.snd_pcm_hw_params_free(parameters);
    if (result >= 0)
        result = chooseSoftware();
    if (result >= 0)
        m_interleaved.resize(m_period * m_channels * m_format->bytes);
    return result;
}

// The PCM's own rate is taken where it has one; our converter is better than ALSA's.
int AlsaPcm::chooseHardware(snd_pcm_hw_params_t* parameters, std::uint32_t periodFrames) {
    const bool output = m_direction == SND_PCM_STREAM_PLAYBACK;
    m_rate = static_cast<unsigned>(kGraphRate);
    m_channels = output ? 2 : 1;
    m_period = periodFrames;
    m_buffer = kPeriodsInBuffer * periodFrames;
    int result = m_alsa.snd_pcm_hw_params_any(m_pcm, parameters);
    if (result >= 0)
        result =
            m_alsa.snd_pcm_hw_params_set_access(m_pcm, parameters, SND_PCM_ACCESS_RW_INTERLEAVED);
    if (result >= 0)
        result = m_alsa.snd_pcm_hw_params_set_rate_resample(m_pcm, parameters, 0);
    if (result >= 0)
        result = chooseFormat(parameters);
    if (result >= 0)
        result = m_alsa.snd_pcm_hw_params_set_channels_near(m_pcm, parameters, &m_channels);
    if (result >= 0)
        result = m_alsa.snd_pcm_hw_params_set_rate_near(m_pcm, parameters, &m_rate, nullptr);
    if (result >= 0)
        result =
            m_alsa.snd_pcm_hw_params_set_period_size_near(m_pcm, parameters, &m_period, nullptr);
    if (result >= 0)
        result = m_alsa.snd_pcm_hw_params_set_buffer_size_near(m_pcm, parameters, &m_buffer);
    if (result >= 0)
        result = m_alsa.snd_pcm_hw_params(m_pcm, parameters);
    if (result >= 0) {
        m_alsa.snd_pcm_hw_params_get_period_size(parameters, &m_period, nullptr);
        m_alsa.snd_pcm_hw_params_get_buffer_size(parameters, &m_buffer);
    }
    return result;
}

int AlsaPcm::chooseFormat(snd_pcm_hw_params_t* parameters) {
    for (const AlsaFormat& format : AlsaFormat::all()) {
        if (m_alsa.snd_pcm_hw_params_test_format(m_pcm, parameters, format.format) != 0)
            continue;
        m_format = &format;
        return m_alsa.snd_pcm_hw_params_set_format(m_pcm, parameters, format.format);
    }
    return -EINVAL;
}

// Playing starts when the buffer is full, capturing at the first read.
int AlsaPcm::chooseSoftware() {
    const bool output = m_direction == SND_PCM_STREAM_PLAYBACK;
    snd_pcm_sw_params_t* parameters = nullptr;
    if (m_alsa.snd_pcm_sw_params_malloc(&parameters) < 0)
        return -ENOMEM;
    int result = m_alsa.snd_pcm_sw_params_current(m_pcm, parameters);
    if (result >= 0)
        result = m_alsa.snd_pcm_sw_params_set_start_threshold(
            m_pcm, parameters, output ? m_buffer - m_buffer % m_period : 1);
    if (result >= 0)
        result = m_alsa.snd_pcm_sw_params_set_avail_min(m_pcm, parameters, m_period);
    if (result >= 0)
        result = m_alsa.snd_pcm_sw_params(m_pcm, parameters);
    m_alsa.snd_pcm_sw_params_free(parameters);
    return result;
}

snd_pcm_sframes_t AlsaPcm::write(std::span<const float> mono) {
    const auto part = mono.first(std::min<std::size_t>(mono.size(), m_period));
    m_format->spread(part, m_channels, m_interleaved.data());
    const auto taken = m_alsa.snd_pcm_writei(m_pcm, m_interleaved.data(), part.size());
    return taken == -EAGAIN ? 0 : taken;
}

snd_pcm_sframes_t AlsaPcm::read(std::span<float> mono) {
    const auto most = std::min<snd_pcm_uframes_t>(mono.size(), m_period);
    const auto heard = m_alsa.snd_pcm_readi(m_pcm, m_interleaved.data(), most);
    if (heard > 0)
        m_format->pick(m_interleaved.data(), m_channels,
                       mono.first(static_cast<std::size_t>(heard)));
    return heard == -EAGAIN ? 0 : heard;
}

bool AlsaPcm::recover(snd_pcm_sframes_t error) {
    if (m_alsa.snd_pcm_recover(m_pcm, static_cast<int>(error), 1) < 0)
        return false;
    if (m_direction == SND_PCM_STREAM_CAPTURE)
        m_alsa.snd_pcm_start(m_pcm);
    return true;
}
