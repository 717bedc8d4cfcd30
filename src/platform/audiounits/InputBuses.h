#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "audiounits/AudioUnitTypes.h"

/// What feeds one input bus of a component: a connection or a render callback, whichever was set
/// last, in a format.
struct InputBus {
    StreamDescription format = StreamDescription::sint16(1);
    AudioUnitConnection connection;
    AURenderCallbackStruct callback;

    bool connected() const { return connection.sourceAudioUnit || callback.inputProc; }
    /// [render] `frames` frames of `format` into `list`; "no connection" where nothing feeds the
    /// bus. `element` is the bus number that a callback is told.
    OSStatus pull(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                  AudioUnitElement element, std::uint32_t frames,
                  AudioBufferList* list) const noexcept;
};

/// The input buses of a component. Buses may be added and connected while audio runs: a render
/// reads one immutable table, and every change publishes a new one. Tables that renders may still
/// read are kept until the component goes; there are only as many as there were changes.
class InputBuses {
  public:
    using Table = std::vector<InputBus>;

    explicit InputBuses(std::uint32_t count);

    /// [render] Valid while the component lives.
    const Table& table() const noexcept { return *m_current.load(std::memory_order_acquire); }

    /// [control] Keeps the buses that stay.
    void setCount(std::uint32_t count);

    /// [control] The properties of an input bus that every component shares: connection, render
    /// callback, stream format. A connection brings its source's output format along.
    OSStatus setProperty(AudioUnitPropertyID property, AudioUnitScope scope,
                         AudioUnitElement element, const void* data, std::uint32_t size);

  private:
    void publish(Table table);
    OSStatus connect(AudioUnitElement element, const AudioUnitConnection& connection);

    std::vector<std::unique_ptr<const Table>> m_tables;  // the last one is current
    std::atomic<const Table*> m_current{nullptr};
};
