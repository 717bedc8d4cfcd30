#pragma once

#include <atomic>
#include <functional>
#include <string>

#include "midi/LearnedControllers.h"
#include "midi/MidiControlSettings.h"
#include "midi/MidiControlTarget.h"
#include "midi/MidiKeys.h"
#include "midi/MidiMessage.h"

/// From messages to keys and dials: notes, pedals, wheels, programs and learned controllers. Until
/// settings().enabled there are only notes, of all channels, as they come. [main]
class MidiControls {
  public:
    /// `defaults` keep the settings and what was learned, and outlive this.
    explicit MidiControls(UserDefaults& defaults);

    /// What is played; null for nothing. Not retained. What was held is forgotten.
    void setNotes(Notes* notes);
    /// What else controllers reach; null for nothing. Not retained.
    void setTarget(MidiControlTarget* target) { m_target = target; }

    const MidiControlSettings& settings() const { return m_settings; }
    /// Kept at once. What pedals hold ends when controllers are switched off or another channel is
    /// chosen; so does what the other channels hold.
    void setSettings(const MidiControlSettings& settings);
    /// settings().enabled [any thread]
    bool enabled() const { return m_enabled.load(std::memory_order_relaxed); }

    /// The next controller that moves, on any device, turns this dial from now on.
    void learn(ParameterId id);
    void stopLearning();
    /// The dial that waits for a controller.
    std::optional<ParameterId> learning() const { return m_learning; }
    /// No device's controller turns this dial any more.
    void forget(ParameterId id);
    /// "CC 74", or "CC 1, CC 74" where devices differ; empty for none. Of all devices ever learned.
    std::string controllersOf(ParameterId id) const { return m_learned.turning(id); }

    /// Called after learning, forgetting and changes of the settings.
    std::function<void()> changed;

    /// A message from the device of that name.
    void perform(const MidiMessage& message, const std::string& device);
    /// The source is gone, and what it holds with it.
    void remove(MIDIEndpointRef source);

  private:
    void performController(const MidiMessage& message, const std::string& device);
    void control(const MidiMessage& message, const std::string& device);
    void controlChannel(const MidiMessage& message);
    void learnFrom(const MidiMessage& message, const std::string& device);
    void turn(ParameterId dial, std::uint8_t value, SoftTakeover* takeover);
    void bend(int bend, MIDIEndpointRef source);
    void applyBend();
    void silence();
    void tellChanged();

    UserDefaults& m_defaults;
    MidiControlSettings m_settings;
    std::atomic<bool> m_enabled{false};
    LearnedControllers m_learned;
    std::optional<ParameterId> m_learning;
    MidiKeys m_keys;
    MidiControlTarget* m_target = nullptr;
    int m_bend = 0;                // -8192 to 8191
    MIDIEndpointRef m_bentBy = 0;  // whose it is
};
