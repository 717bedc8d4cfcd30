#pragma once

#include <memory>

#include "graph/VornCallbackUnit.h"
#include "handoff/Shared.h"
#include "notifications/NotificationCentre.h"

/// Name of the notice of a clip. Posted from the audio thread, without an object.
inline constexpr const char* kAudioClippedNotification = "com.quaddle.audio.clipped";

/// Scales its mono float upstream to signed 16-bit samples, with an automatic gain that keeps the
/// peak at a target, and clips what would overflow. Not a number becomes 0.
class Float32ToSInt16 : public VornCallbackUnit {
  public:
    Float32ToSInt16();

    /// Target peak, 0 to 1; 0 or less is off. [any thread], like the properties below
    float autoGainControl() const { return m_autoGainControl; }
    void setAutoGainControl(float peak) { m_autoGainControl = peak; }
    /// 1 after a clip, then less by a tenth with every render.
    float clippiness() const { return m_clippiness; }
    void setClippiness(float clippiness) { m_clippiness = clippiness; }
    /// Loudest sample since the last call, 0 to 1 of full scale. One that comes at this very moment
    /// may be missed. [control]
    float takePeak() {
        const float peak = m_peak;
        m_peak = 0.f;
        return peak;
    }
    /// Automatic gain in force.
    float internalGainLevel() const { return m_internalGainLevel; }
    void setInternalGainLevel(float gain) { m_internalGainLevel = gain; }
    /// Whether a render that clips posts the notice.
    bool notifyClipping() const { return m_notifyClipping; }
    void setNotifyClipping(bool notify) { m_notifyClipping = notify; }

    /// Frames that one render can take without growing.
    std::uint32_t sourceSize() const { return m_sourceSize; }
    /// A larger size gets new memory, without the old contents. [control], or a render that is
    /// asked for more than was ever announced.
    void setSourceSize(std::uint32_t frames);
    float* sourceBuffer() const { return m_sourceBuffer.get(); }

  private:
    static constexpr std::uint32_t kFirstSize = 512;

    static OSStatus render(void* unit, AudioUnitRenderActionFlags* flags,
                           const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                           AudioBufferList* data);
    void convert(std::uint32_t frames, bool silent, std::int16_t* out) noexcept;
    float gainAfter(float peak) noexcept;

    std::unique_ptr<float[]> m_sourceBuffer;
    std::uint32_t m_sourceSize = kFirstSize;
    std::uint32_t m_capacity = kFirstSize;  // of m_sourceBuffer
    Shared<float> m_autoGainControl = 0.f;
    Shared<float> m_clippiness = 0.f;
    Shared<float> m_peak = 0.f;
    Shared<float> m_internalGainLevel = 1.f;
    Shared<bool> m_notifyClipping = false;
    // Made here, on the main thread: the first to ask for the centre makes it.
    NotificationCentre& m_notifications = NotificationCentre::defaultCentre();
};
