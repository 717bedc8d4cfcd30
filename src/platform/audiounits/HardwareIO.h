#pragma once

#include <atomic>
#include <memory>

#include "audiounits/AudioUnit.h"
#include "audiounits/InputBuses.h"
#include "audiounits/StreamConversion.h"
#include "audiounits/devices/AudioDevice.h"

/// The way to the loudspeaker (element 0) and from the microphone (element 1). Pulls its input bus
/// 0 whenever the device wants frames; while an input callback is set, calls it with every captured
/// period, which the callback then fetches by rendering bus 1.
class HardwareIO final : public AudioUnitInstance, private AudioDeviceClient {
  public:
    HardwareIO();
    ~HardwareIO() override;

    OSStatus setProperty(AudioUnitPropertyID property, AudioUnitScope scope,
                         AudioUnitElement element, const void* data, std::uint32_t size) override;
    OSStatus propertyInfo(AudioUnitPropertyID property, AudioUnitScope scope,
                          AudioUnitElement element, std::uint32_t* size) override;
    OSStatus property(AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element,
                      void* data, std::uint32_t* size) override;
    OSStatus initialise() override;
    OSStatus uninitialise() override;
    /// Bus 1, inside the input callback only: the period just captured.
    OSStatus render(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                    std::uint32_t bus, std::uint32_t frames, AudioBufferList* data) override;
    OSStatus start() override;
    OSStatus stop() override;

  private:
    struct Workspace;

    void produce(std::span<std::int16_t> mono, const AudioTimeStamp& time) noexcept override;
    void consume(std::span<const std::int16_t> mono, const AudioTimeStamp& time) noexcept override;

    OSStatus setEnabled(AudioUnitScope scope, AudioUnitElement element, const void* data,
                        std::uint32_t size);
    OSStatus setFormat(AudioUnitScope scope, AudioUnitElement element, const void* data,
                       std::uint32_t size);
    OSStatus setInputCallback(const void* data, std::uint32_t size);
    bool captures() const { return m_inputEnabled && m_inputCallback.inputProc; }

    InputBuses m_inputs{1};
    StreamDescription m_captureFormat = StreamDescription::sint16(1);
    AURenderCallbackStruct m_inputCallback;  // changed only while the device is stopped
    bool m_inputEnabled = false;
    bool m_outputEnabled = true;
    std::unique_ptr<Workspace> m_workspace;    // set while initialised
    std::shared_ptr<AudioDevice> m_device;     // set while started
    std::span<const std::int16_t> m_captured;  // [render] the period being handed over
};
