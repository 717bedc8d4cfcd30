#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

#include "graph/Vornery.h"

/// How loud the input is, for a player who sets it up. Opening and closing it starts a running
/// device anew, once each. It has the engine's one input callback while it is open, so it is not
/// opened during a take. [main]
class InputMeter {
  public:
    InputMeter();
    ~InputMeter() { close(); }
    InputMeter(const InputMeter&) = delete;
    InputMeter& operator=(const InputMeter&) = delete;

    void open();
    void close();
    /// A take has the input now: closed, and the input is left alone.
    void giveUp();
    bool isOpen() const { return m_open; }

    /// The loudest sample since it was asked for last, 0 to 1 of full scale.
    float takePeak();

  private:
    static OSStatus input(void* meter, AudioUnitRenderActionFlags* flags,
                          const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                          AudioBufferList* ioData);
    void receive(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time, std::uint32_t bus,
                 std::uint32_t frames);

    VornIOUnit& m_hardware = Vornery::sharedInstance().hardware();
    std::vector<std::int16_t> m_scratch;  // [render]
    std::atomic<std::int32_t> m_peak{0};  // the callback raises it, takePeak clears it
    bool m_open = false;
};
