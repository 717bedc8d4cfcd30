#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "audiounits/devices/DeviceBridge.h"
#include "audiounits/devices/PulseConnection.h"

/// A stream to a PulseAudio sink, at the sink's own rate, on both channels of a stereo pair that
/// the server spreads over what the sink has; while capturing one from a source, of which the left
/// channel is heard. Both are served on the connection's thread.
class PulseDevice final : public AudioDevice {
  public:
    /// `sink` "" is the default one, which the stream then follows. A period of 16 to
    /// kMaximumDeviceFrames, in frames of the sink; 0 is 512. The server holds two of them.
    /// `source` "" is the default one, which is also heard where there is none of that name.
    explicit PulseDevice(std::string sink = "", std::uint32_t periodFrames = 0,
                         std::string source = "");
    ~PulseDevice() override;

    OSStatus start(AudioDeviceClient& client, bool capture) override;
    void stop() override;
    AudioDeviceInfo info() const override;
    bool alive() const override { return m_alive; }

    /// Every sink, the default one first.
    static std::vector<AudioDeviceInfo> list();
    /// Every source under the same kind of name: the default one first, last what only hears a
    /// sink.
    static std::vector<AudioDeviceInfo> listInputs();

  private:
    PulseConnection::Endpoint findMicrophone();
    bool open(AudioDeviceClient& client, bool capture);
    bool openStreams(bool capture);
    pa_stream* newStream(const char* name, std::uint32_t rate);
    bool connectOutput();
    bool connectInput();
    void closeStream(pa_stream*& stream);
    void streamChanged(pa_stream* stream);
    void missed();
    void write(std::size_t bytes);
    void read();
    void readLatency();

    const std::string m_sink;
    const std::string m_source;
    const std::uint32_t m_periodFrames;
    std::unique_ptr<PulseConnection> m_connection;
    pa_stream* m_output = nullptr;
    pa_stream* m_input = nullptr;  // null unless capturing
    std::unique_ptr<DeviceBridge> m_bridge;
    PulseConnection::Endpoint m_speaker;
    PulseConnection::Endpoint m_microphone;
    bool m_hearsChosen = false;  // else the default source, which the stream follows
    std::vector<float> m_mono;
    std::atomic<bool> m_alive{false};
    std::atomic<bool> m_realTime{false};
    std::atomic<double> m_latencySeconds{0};
    std::atomic<std::uint64_t> m_xruns{0};
    mutable std::mutex m_infoMutex;
    AudioDeviceInfo m_info;
};
