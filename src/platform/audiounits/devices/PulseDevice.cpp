#include "audiounits/devices/PulseDevice.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <thread>

#include "audiounits/devices/RealTimePriority.h"

namespace {

constexpr std::uint32_t kUsualPeriod = 512;
constexpr std::uint8_t kChannels = 2;
constexpr std::size_t kFrameBytes = kChannels * sizeof(float);
constexpr auto kServersChoice = static_cast<std::uint32_t>(-1);
constexpr auto kStreamFlags = static_cast<pa_stream_flags_t>(
    PA_STREAM_ADJUST_LATENCY | PA_STREAM_AUTO_TIMING_UPDATE | PA_STREAM_INTERPOLATE_TIMING);

using Endpoints = std::vector<PulseConnection::Endpoint>;

AudioDeviceInfo infoOf(const PulseConnection::Endpoint& sink) {
    AudioDeviceInfo info;
    info.name = "pulse:" + sink.name;
    info.description = sink.description;
    info.rate = sink.rate;
    info.latencySeconds = sink.latencySeconds;
    return info;
}

/// All of them, the default one first.
std::vector<AudioDeviceInfo> infosOf(const Endpoints& endpoints, const std::string& standard) {
    std::vector<AudioDeviceInfo> all;
    for (const PulseConnection::Endpoint& endpoint : endpoints) {
        AudioDeviceInfo info = infoOf(endpoint);
        info.periodFrames = kUsualPeriod;
        if (endpoint.name == standard)
            info.description += " (the server's default)";
        all.insert(endpoint.name == standard ? all.begin() : all.end(), info);
    }
    return all;
}

bool isMonitor(const AudioDeviceInfo& source) {
    return source.name.ends_with(".monitor");
}

}  // namespace

PulseDevice::PulseDevice(std::string sink, std::uint32_t periodFrames, std::string source)
    : m_sink(std::move(sink)),
      m_source(std::move(source)),
      m_periodFrames(periodFrames ? periodFrames : kUsualPeriod),
      m_mono(kMaximumDeviceFrames) {}

PulseDevice::~PulseDevice() {
    stop();
}

OSStatus PulseDevice::start(AudioDeviceClient& client, bool capture) {
    stop();
    m_xruns = 0;
    m_latencySeconds = 0;
    if (open(client, capture))
        return noErr;
    stop();
    return kAudioUnitErr_FailedInitialization;
}

void PulseDevice::stop() {
    if (m_connection) {
        PulseConnection::Lock lock(*m_connection);
        closeStream(m_output);
        closeStream(m_input);
    }
    m_connection.reset();
    m_alive = false;
}

AudioDeviceInfo PulseDevice::info() const {
    std::lock_guard guard(m_infoMutex);
    AudioDeviceInfo info = m_info;
    info.periodFrames = m_periodFrames;
    info.latencySeconds = m_latencySeconds;
    info.realTime = m_realTime;
    info.xruns = m_xruns;
    return info;
}

std::vector<AudioDeviceInfo> PulseDevice::list() {
    const auto connection = PulseConnection::open();
    if (!connection)
        return {};
    return infosOf(connection->sinks(), connection->defaults().sink);
}

std::vector<AudioDeviceInfo> PulseDevice::listInputs() {
    const auto connection = PulseConnection::open();
    if (!connection)
        return {};
    auto all = infosOf(connection->sources(), connection->defaults().source);
    std::stable_partition(all.begin(), all.end(), std::not_fn(isMonitor));
    return all;
}

bool PulseDevice::open(AudioDeviceClient& client, bool capture) {
    m_connection = PulseConnection::open();
    if (!m_connection)
        return false;
    m_speaker = m_connection->sink(m_sink.empty() ? m_connection->defaults().sink : m_sink);
    if (capture)
        m_microphone = findMicrophone();
    const bool hears = capture && !m_microphone.name.empty();
    if (m_speaker.name.empty())
        return false;
    m_bridge = std::make_unique<DeviceBridge>(client, m_speaker.rate,
                                              hears ? m_microphone.rate : m_speaker.rate);
    return m_bridge->usable() && openStreams(hears);
}

PulseConnection::Endpoint PulseDevice::findMicrophone() {
    auto chosen = m_source.empty() ? PulseConnection::Endpoint{} : m_connection->source(m_source);
    m_hearsChosen = !chosen.name.empty();
    return m_hearsChosen ? chosen : m_connection->source(m_connection->defaults().source);
}

bool PulseDevice::openStreams(bool capture) {
    PulseConnection::Lock lock(*m_connection);
    m_connection->runOnThread(
        [](pa_threaded_mainloop*, void* self) {
            static_cast<PulseDevice*>(self)->m_realTime = RealTimePriority::acquire();
        },
        this);
    m_alive = true;
    m_connection->whenGone([this] { m_alive = false; });
    if (!connectOutput() || (capture && !connectInput()))
        return false;
    const auto ready = [this](pa_stream* stream) {
        return !stream || m_connection->library().pa_stream_get_state(stream) == PA_STREAM_READY;
    };
    m_connection->await([&] { return !m_alive || (ready(m_output) && ready(m_input)); });
    if (!m_alive || !ready(m_output) || !ready(m_input))
        return false;
    std::lock_guard guard(m_infoMutex);
    m_info = infoOf(m_speaker);
    return true;
}

pa_stream* PulseDevice::newStream(const char* name, std::uint32_t rate) {
    const pa_sample_spec format{PA_SAMPLE_FLOAT32NE, rate, kChannels};
    pa_stream* const stream =
        m_connection->library().pa_stream_new(m_connection->context(), name, &format, nullptr);
    if (stream)
        m_connection->library().pa_stream_set_state_callback(
            stream,
            [](pa_stream* changed, void* self) {
                static_cast<PulseDevice*>(self)->streamChanged(changed);
            },
            this);
    return stream;
}

bool PulseDevice::connectOutput() {
    const PulseLibrary& pulse = m_connection->library();
    m_output = newStream("Synthesiser", m_speaker.rate);
    if (!m_output)
        return false;
    pulse.pa_stream_set_write_callback(
        m_output,
        [](pa_stream*, std::size_t bytes, void* self) {
            static_cast<PulseDevice*>(self)->write(bytes);
        },
        this);
    pulse.pa_stream_set_underflow_callback(
        m_output, [](pa_stream*, void* self) { static_cast<PulseDevice*>(self)->missed(); }, this);
    pulse.pa_stream_set_latency_update_callback(
        m_output, [](pa_stream*, void* self) { static_cast<PulseDevice*>(self)->readLatency(); },
        this);
    const auto period = static_cast<std::uint32_t>(m_periodFrames * kFrameBytes);
    const pa_buffer_attr buffering{kServersChoice, 2 * period, kServersChoice, period,
                                   kServersChoice};
    return pulse.pa_stream_connect_playback(m_output, m_sink.empty() ? nullptr : m_sink.c_str(),
                                            &buffering, kStreamFlags, nullptr, nullptr) == 0;
}

bool PulseDevice::connectInput() {
    const PulseLibrary& pulse = m_connection->library();
    m_input = newStream("Microphone", m_microphone.rate);
    if (!m_input)
        return false;
    pulse.pa_stream_set_read_callback(
        m_input,
        [](pa_stream*, std::size_t, void* self) { static_cast<PulseDevice*>(self)->read(); }, this);
    const auto period = static_cast<std::uint32_t>(m_periodFrames * kFrameBytes);
    const pa_buffer_attr buffering{kServersChoice, kServersChoice, kServersChoice, kServersChoice,
                                   period};
    return pulse.pa_stream_connect_record(m_input, m_hearsChosen ? m_source.c_str() : nullptr,
                                          &buffering, kStreamFlags) == 0;
}

void PulseDevice::closeStream(pa_stream*& stream) {
    if (!stream)
        return;
    const PulseLibrary& pulse = m_connection->library();
    pulse.pa_stream_set_state_callback(stream, nullptr, nullptr);
    pulse.pa_stream_set_write_callback(stream, nullptr, nullptr);
    pulse.pa_stream_set_read_callback(stream, nullptr, nullptr);
    pulse.pa_stream_set_underflow_callback(stream, nullptr, nullptr);
    pulse.pa_stream_set_latency_update_callback(stream, nullptr, nullptr);
    pulse.pa_stream_disconnect(stream);
    pulse.pa_stream_unref(stream);
    stream = nullptr;
}

void PulseDevice::streamChanged(pa_stream* stream) {
    if (!PA_STREAM_IS_GOOD(m_connection->library().pa_stream_get_state(stream)))
        m_alive = false;
    m_connection->signal();
}

// The short wait keeps an overloaded thread of real-time priority within the limit of its kind,
// which counts from wait to wait.
void PulseDevice::missed() {
    ++m_xruns;
    std::this_thread::sleep_for(std::chrono::microseconds(50));
}

void PulseDevice::write(std::size_t bytes) {
    const PulseLibrary& pulse = m_connection->library();
    while (bytes >= kFrameBytes) {
        void* data = nullptr;
        std::size_t room = bytes;
        if (pulse.pa_stream_begin_write(m_output, &data, &room) < 0 || room < kFrameBytes)
            return;
        const std::size_t frames =
            std::min({room, bytes, m_mono.size() * kFrameBytes}) / kFrameBytes;
        const std::span mono(m_mono.data(), frames);
        m_bridge->produce(mono);
        auto* out = static_cast<float*>(data);
        for (const float sample : mono) {
            *out++ = sample;
            *out++ = sample;
        }
        const std::size_t written = frames * kFrameBytes;
        if (pulse.pa_stream_write(m_output, data, written, nullptr, 0, PA_SEEK_RELATIVE) < 0)
            return;
        bytes -= written;
    }
}

// The left channel is ours: asked for one channel, the server would mix both. A hole in the
// recording is heard as silence, so that later frames keep their time.
void PulseDevice::read() {
    const PulseLibrary& pulse = m_connection->library();
    const void* data = nullptr;
    std::size_t bytes = 0;
    while (pulse.pa_stream_readable_size(m_input) > 0 &&
           pulse.pa_stream_peek(m_input, &data, &bytes) == 0 && bytes > 0) {
        const auto* left = static_cast<const float*>(data);
        for (std::size_t frames = bytes / kFrameBytes; frames > 0;) {
            const std::span part(m_mono.data(), std::min(frames, m_mono.size()));
            for (float& sample : part) {
                sample = left ? *left : 0.f;
                left += left ? kChannels : 0;
            }
            m_bridge->consume(part);
            frames -= part.size();
        }
        pulse.pa_stream_drop(m_input);
    }
}

void PulseDevice::readLatency() {
    pa_usec_t latency = 0;
    int negative = 0;
    if (m_connection->library().pa_stream_get_latency(m_output, &latency, &negative) == 0)
        m_latencySeconds = negative ? 0 : static_cast<double>(latency) * 1e-6;
}
