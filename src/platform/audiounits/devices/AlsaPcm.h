#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "audiounits/devices/AlsaFormat.h"

/// One direction of an ALSA PCM, opened so that no call waits, in whatever format, rate and number
/// of channels it has near ours. Mono floats outside.
class AlsaPcm {
  public:
    /// Null, with ALSA's negative error code in `error`, where it cannot be had.
    static std::unique_ptr<AlsaPcm> open(const std::string& name, snd_pcm_stream_t direction,
                                         std::uint32_t periodFrames, int& error);
    ~AlsaPcm();
    AlsaPcm(const AlsaPcm&) = delete;
    AlsaPcm& operator=(const AlsaPcm&) = delete;

    double rate() const { return m_rate; }
    std::uint32_t periodFrames() const { return static_cast<std::uint32_t>(m_period); }
    std::uint32_t bufferFrames() const { return static_cast<std::uint32_t>(m_buffer); }

    /// Frames taken, at most a period; 0 when there is no room; a negative error code else.
    snd_pcm_sframes_t write(std::span<const float> mono);
    /// Frames heard, at most a period; 0 when there are none; a negative error code else.
    snd_pcm_sframes_t read(std::span<float> mono);
    /// Waits for room or for frames, at most so long.
    void wait(int milliseconds) { m_alsa.snd_pcm_wait(m_pcm, milliseconds); }
    /// After an error: whether the PCM goes on.
    bool recover(snd_pcm_sframes_t error);

  private:
    AlsaPcm(const AlsaLibrary& alsa, snd_pcm_t* pcm, snd_pcm_stream_t direction);
    int configure(std::uint32_t periodFrames);
    int chooseHardware(snd_pcm_hw_params_t* parameters, std::uint32_t periodFrames);
    int chooseFormat(snd_pcm_hw_params_t* parameters);
    int chooseSoftware();

    const AlsaLibrary& m_alsa;
    snd_pcm_t* m_pcm;
    const snd_pcm_stream_t m_direction;
    const AlsaFormat* m_format = nullptr;
    unsigned m_rate = 0;
    unsigned m_channels = 0;
    snd_pcm_uframes_t m_period = 0;
    snd_pcm_uframes_t m_buffer = 0;
    std::vector<std::byte> m_interleaved;  // one period
};
