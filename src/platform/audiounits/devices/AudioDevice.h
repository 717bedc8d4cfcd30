#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "audiounits/AudioUnitTypes.h"

/// The largest number of frames that a device asks for in one call.
inline constexpr std::uint32_t kMaximumDeviceFrames = 8192;

/// Who plays through a device: the hardware I/O component. Called on the device's own thread,
/// never from two threads at once, and not at all once AudioDevice::stop has returned.
class AudioDeviceClient {
  public:
    virtual ~AudioDeviceClient() = default;
    /// [render] Fills `mono` with the next frames at 44100 Hz. At most kMaximumDeviceFrames.
    virtual void produce(std::span<std::int16_t> mono, const AudioTimeStamp& time) noexcept = 0;
    /// [render] Takes the next captured frames at 44100 Hz. At most kMaximumDeviceFrames.
    virtual void consume(std::span<const std::int16_t> mono,
                         const AudioTimeStamp& time) noexcept = 0;
};

/// What `ombrix devices` shows of a device.
struct AudioDeviceInfo {
    std::string name;                // stable: "jack", "pulse:SINK", "alsa:PCM", "clock"
    std::string description;         // for people
    double rate = 0;                 // frames per second of the device itself
    std::uint32_t periodFrames = 0;  // of the device, at its rate
    double latencySeconds = 0;       // from produce to the loudspeaker, as far as it is known
    bool realTime = false;           // whether the rendering thread was granted real-time priority
    std::uint64_t xruns = 0;         // periods lost since start
    bool isDefault = false;
};

/// Whether anyone hears what is played. A change is told by comparing with what was seen before.
struct AudioDeviceState {
    enum class Presence {
        starting,  // none has answered so far, or nothing was started
        playing,   // through the device `name`
        absent,    // none answers; the clock takes the time
        lost,      // none any more: the device `name` went away
    };

    Presence presence = Presence::starting;
    std::string name;          // stable, of the device that plays, or played last
    std::string absence;       // one line for the user that says what is missing, while absent
    std::uint64_t losses = 0;  // how often a device went away since start

    bool operator==(const AudioDeviceState&) const = default;
};

/// Somewhere to play to. [control]
class AudioDevice {
  public:
    virtual ~AudioDevice() = default;
    /// Begins calling `client`; captures too if `capture`. The client outlives the running device.
    virtual OSStatus start(AudioDeviceClient& client, bool capture) = 0;
    /// Returns when no call to the client is under way and none will come.
    virtual void stop() = 0;
    /// May be asked while another thread starts or stops the device.
    virtual AudioDeviceInfo info() const = 0;
    /// [any thread] False once a running device knows that it will not call again until it is
    /// stopped and started: its server went away, or changed in a way that wants a new start.
    virtual bool alive() const { return true; }
    /// [any thread] Never waits for a server.
    virtual AudioDeviceState state() const;
};
