#include "audiounits/devices/AlsaDevice.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "audiounits/devices/RealTimePriority.h"
#include "log/Log.h"

namespace {

constexpr std::uint32_t kUsualPeriod = 512;
constexpr int kRecoveries = 10;    // in a row, without a frame taken, before the PCM counts as dead
constexpr int kLongestWait = 100;  // milliseconds until a wish to stop is seen
constexpr double kTrialSeconds = 2;  // in which a PCM shows whether it has a clock of its own

}  // namespace

AlsaDevice::AlsaDevice(std::string pcm, std::uint32_t periodFrames)
    : m_name(pcm.empty() ? "default" : std::move(pcm)),
      m_wantedPeriod(periodFrames ? periodFrames : kUsualPeriod) {}

AlsaDevice::~AlsaDevice() {
    stop();
}

OSStatus AlsaDevice::start(AudioDeviceClient& client, bool capture) {
    stop();
    int error = 0;
    m_output = AlsaPcm::open(m_name, SND_PCM_STREAM_PLAYBACK, m_wantedPeriod, error);
    if (m_output && capture)
        openInput();
    if (m_output)
        m_bridge = std::make_unique<DeviceBridge>(client, m_output->rate(),
                                                  m_input ? m_input->rate() : m_output->rate());
    if (!m_output || !m_bridge->usable()) {
        stop();
        return kAudioUnitErr_FailedInitialization;
    }
    m_mono.resize(m_output->periodFrames());
    keepInfo();
    m_xruns = 0;
    m_alive = true;
    m_running = true;
    m_thread = std::thread([this] { run(); });
    return noErr;
}

void AlsaDevice::openInput() {
    int error = 0;
    m_input = AlsaPcm::open(m_name, SND_PCM_STREAM_CAPTURE, m_wantedPeriod, error);
    if (m_input)
        m_heard.resize(m_input->periodFrames());
    else
        Log::line("audio: alsa:%s does not capture (error %d)", m_name.c_str(), error);
}

void AlsaDevice::stop() {
    m_running = false;
    if (m_thread.joinable())
        m_thread.join();
    m_output.reset();
    m_input.reset();
    m_alive = false;
}

AudioDeviceInfo AlsaDevice::info() const {
    std::lock_guard guard(m_infoMutex);
    AudioDeviceInfo info = m_info;
    info.realTime = m_realTime;
    info.xruns = m_xruns;
    return info;
}

void AlsaDevice::keepInfo() {
    std::lock_guard guard(m_infoMutex);
    m_info.name = "alsa:" + m_name;
    m_info.description = "ALSA";
    m_info.rate = m_output->rate();
    m_info.periodFrames = m_output->periodFrames();
    m_info.latencySeconds = m_output->bufferFrames() / m_output->rate();
}

void AlsaDevice::run() {
    m_realTime = RealTimePriority::acquire();
    m_begun = Time::now();
    m_secondsWritten = 0;
    m_hasNoClock = false;
    while (m_running) {
        if (m_input)
            hear();
        m_bridge->produce(m_mono);
        if (!write(m_mono)) {
            m_alive = false;
            return;
        }
        pace(m_mono.size());
    }
}

// False when the PCM is dead. A short sleep follows each error, so that one that fails for ever
// cannot take the processor.
bool AlsaDevice::write(std::span<const float> mono) {
    int recoveries = 0;
    while (!mono.empty() && m_running) {
        const auto taken = m_output->write(mono);
        if (taken > 0) {
            mono = mono.subspan(static_cast<std::size_t>(taken));
            recoveries = 0;
        } else if (taken == 0) {
            m_output->wait(kLongestWait);
        } else {
            ++m_xruns;
            if (++recoveries > kRecoveries || !m_output->recover(taken))
                return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    return true;
}

// At most two periods, because "null" has frames without end.
void AlsaDevice::hear() {
    for (int i = 0; i < 2; ++i) {
        const auto heard = m_input->read(m_heard);
        if (heard < 0 && !m_input->recover(heard))
            m_input.reset();
        if (heard <= 0)
            return;
        m_bridge->consume({m_heard.data(), static_cast<std::size_t>(heard)});
    }
}

// Hardware never takes much more than its buffer ahead of time. Only the beginning is judged, since
// two clocks drift apart in the long run.
void AlsaDevice::pace(std::size_t frames) {
    m_secondsWritten += static_cast<double>(frames) / m_output->rate();
    const double elapsed = std::chrono::duration<double>(Time::now() - m_begun).count();
    const double buffered = m_output->bufferFrames() / m_output->rate();
    const double ahead = m_secondsWritten - elapsed;
    if (elapsed < kTrialSeconds && ahead > 2 * buffered + 0.05)
        m_hasNoClock = true;
    if (m_hasNoClock && ahead > buffered)
        std::this_thread::sleep_for(std::chrono::duration<double>(ahead - buffered));
}

std::vector<AudioDeviceInfo> AlsaDevice::list() {
    const AlsaLibrary* const alsa = AlsaLibrary::get();
    void** hints = nullptr;
    if (!alsa || alsa->snd_device_name_hint(-1, "pcm", &hints) < 0)
        return {};
    const auto field = [&](void* hint, const char* id) {
        char* const text = alsa->snd_device_name_get_hint(hint, id);
        const std::string copy = text ? text : "";
        std::free(text);
        return copy;
    };
    std::vector<std::pair<std::string, std::string>> pcms{{"default", "ALSA's default device"}};
    for (void** hint = hints; *hint; ++hint) {
        const std::string name = field(*hint, "NAME");
        if (field(*hint, "IOID") != "Input" && name != "default")
            pcms.emplace_back(name, field(*hint, "DESC"));
    }
    alsa->snd_device_name_free_hint(hints);

    std::vector<AudioDeviceInfo> all;
    for (auto& [name, description] : pcms) {
        int error = 0;
        const auto pcm = AlsaPcm::open(name, SND_PCM_STREAM_PLAYBACK, kUsualPeriod, error);
        if (!pcm && error != -EBUSY)
            continue;
        std::ranges::replace(description, '\n', ' ');
        AudioDeviceInfo info;
        info.name = "alsa:" + name;
        info.description = description + (pcm ? "" : " (busy)");
        info.rate = pcm ? pcm->rate() : 0;
        info.periodFrames = pcm ? pcm->periodFrames() : 0;
        info.latencySeconds = pcm ? pcm->bufferFrames() / pcm->rate() : 0;
        all.push_back(info);
    }
    return all;
}
