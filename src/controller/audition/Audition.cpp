#include "audition/Audition.h"

#include <algorithm>

#include "VornWaveSequence.h"
#include "wavechoice/WaveChoice.h"

namespace {

constexpr std::uint32_t kBuses = 3;  // the instrument's, the player's, the scrubber's
constexpr std::int32_t kPlayerBus = 1;
constexpr std::int32_t kScrubberBus = 2;
constexpr double kLookSeconds = 0.02;  // how soon a loaded file is played

Audition::Loaded asSequence(const WaveChoice::Loaded& file) {
    if (!file.wave)
        return {nullptr, file.error, ""};
    return {VornWaveSequence::sequenceWithWave(file.wave), "", file.notice};
}

}  // namespace

Audition::~Audition() {
    forgetLoading();
    if (!m_connected)
        return;
    m_engine.stop();
    m_engine.disconnect(m_player, 0, m_engine.mixer(), kPlayerBus);
    m_engine.disconnect(m_scrubber, 0, m_engine.mixer(), kScrubberBus);
}

void Audition::connect() {
    if (std::exchange(m_connected, true))
        return;
    VornMixerUnit& mixer = m_engine.mixer();
    mixer.setInputBusCount(std::max(mixer.inputBusCount(), kBuses));
    m_engine.connect(m_player, 0, mixer, kPlayerBus);
    m_engine.connect(m_scrubber, 0, mixer, kScrubberBus);
}

Audition::Loaded Audition::load(const std::string& path) {
    return asSequence(WaveChoice::loadAllChannels(path));
}

void Audition::play(Sound sound, const Playing& how) {
    stop();
    connect();
    m_player.setLooping(how.looping);
    m_player.setGain(how.gain);
    m_player.setSequence(std::move(sound));
    m_player.setPlayPosition(how.from);
    m_player.play();
}

void Audition::playFile(const std::string& path, const Playing& how,
                        std::function<void(const Loaded&)> told) {
    forgetLoading();
    const auto wave = WaveChoice::waveOf(path);
    wave->fetch(0);
    const auto look = [this, wave, path, how, told = std::move(told)] {
        if (wave->bkgLoadState() != VornWave2::loaded)
            return;
        forgetLoading();
        const Loaded loaded = asSequence(WaveChoice::withAllChannels(wave, path));
        if (loaded.sound)
            play(loaded.sound, how);
        if (told)
            told(loaded);
    };
    m_loading = RunLoop::main().callEvery(kLookSeconds, look);
}

void Audition::scrub(Sound sound, float gain) {
    stop();
    connect();
    m_scrubber.setGain(gain);
    m_scrubber.setSequence(std::move(sound));
    m_scrubber.stop();
}

void Audition::stop() {
    forgetLoading();
    m_player.stop();
    m_scrubber.stop();
}

void Audition::letGo() {
    stop();
    m_player.setSequence(nullptr);
    m_scrubber.setSequence(nullptr);
}

void Audition::forgetLoading() {
    if (m_loading != 0)
        RunLoop::main().cancel(std::exchange(m_loading, 0));
}

float Audition::peak() const {
    return std::max(m_player.peakValueL(), m_player.peakValueR());
}
