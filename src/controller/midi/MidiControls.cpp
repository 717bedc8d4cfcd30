#include "midi/MidiControls.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr int kBendCentre = 8192;

MidiPlace placeOf(const MidiMessage& message) {
    return {message.source, message.channel};
}

}  // namespace

MidiControls::MidiControls(UserDefaults& defaults)
    : m_defaults(defaults),
      m_settings(MidiControlSettings::load(defaults)),
      m_enabled(m_settings.enabled),
      m_learned(LearnedControllers::load(defaults)) {}

void MidiControls::setNotes(Notes* notes) {
    bend(0, 0);
    m_keys.setNotes(notes);
}

void MidiControls::setSettings(const MidiControlSettings& settings) {
    const MidiControlSettings before = std::exchange(m_settings, settings.repaired());
    if (m_settings == before)
        return;
    m_enabled = m_settings.enabled;
    if (m_settings.enabled != before.enabled || m_settings.channel != before.channel) {
        m_keys.liftAllPedals();
        m_bend = 0;
    }
    if (m_settings.enabled && m_settings.channel != MidiControlSettings::kAllChannels)
        m_keys.removeAllBut(m_settings.channel - 1);
    if (!m_settings.enabled)
        m_learning.reset();
    applyBend();
    m_settings.keep(m_defaults);
    tellChanged();
}

void MidiControls::learn(ParameterId id) {
    if (!m_settings.enabled || parameter(id).dialName.empty())
        return;
    m_learning = id;
    tellChanged();
}

void MidiControls::stopLearning() {
    if (std::exchange(m_learning, std::nullopt))
        tellChanged();
}

void MidiControls::forget(ParameterId id) {
    if (!m_learned.forget(id))
        return;
    m_learned.keep(m_defaults);
    tellChanged();
}

void MidiControls::tellChanged() {
    if (changed)
        changed();
}

void MidiControls::perform(const MidiMessage& message, const std::string& device) {
    using Kind = MidiMessage::Kind;
    if (!m_keys.notes())
        return;
    if (message.kind == Kind::flood)
        return m_settings.enabled ? m_keys.removeAll() : void();
    const bool filtered =
        m_settings.enabled && m_settings.channel != MidiControlSettings::kAllChannels;
    if (filtered && message.channel != m_settings.channel - 1)
        return;
    if (message.kind == Kind::down)
        m_keys.press(placeOf(message), message.data1,
                     m_settings.enabled ? curved(m_settings.curve, message.data2) : message.data2);
    else if (message.kind == Kind::up)
        m_keys.release(placeOf(message), message.data1);
    else if (message.kind == Kind::aftertouch)
        m_keys.notes()->midiNoteAftertouch();
    else if (m_settings.enabled)
        performController(message, device);
}

void MidiControls::performController(const MidiMessage& message, const std::string& device) {
    if (message.kind == MidiMessage::Kind::control)
        control(message, device);
    else if (message.kind == MidiMessage::Kind::bend)
        bend(message.data2 * 128 + message.data1 - kBendCentre, message.source);
    else if (m_target)
        m_target->pickPreset(message.data1);
}

void MidiControls::control(const MidiMessage& message, const std::string& device) {
    const int number = message.data1;
    if (number >= kMidiAllSoundOff)
        return controlChannel(message);
    if (number == kMidiSustain)
        return m_keys.setSustain(placeOf(message), isPedalDown(message.data2));
    if (number == kMidiSostenuto)
        return m_keys.setSostenuto(placeOf(message), isPedalDown(message.data2));
    if (m_learning)
        learnFrom(message, device);
    if (auto* const learned = m_learned.find(device, message.channel, number))
        turn(learned->dial, message.data2, &learned->takeover);
    else if (number == kMidiModulation && m_settings.modulation)
        turn(*m_settings.modulation, message.data2, nullptr);
}

void MidiControls::controlChannel(const MidiMessage& message) {
    if (message.data1 >= kMidiAllNotesOff)
        return m_keys.releaseKeys(placeOf(message));
    if (message.data1 == kMidiAllSoundOff)
        return silence();
    if (message.data1 != kMidiResetControllers)
        return;
    m_keys.liftPedals(placeOf(message));
    bend(0, message.source);
}

/// The effects are one for all channels, so all of it falls silent.
void MidiControls::silence() {
    m_keys.liftAllPedals();
    m_keys.removeAll();
    if (m_target)
        m_target->silence();
}

void MidiControls::learnFrom(const MidiMessage& message, const std::string& device) {
    m_learned.learn(device, {message.channel, message.data1, *m_learning, {}});
    m_learned.keep(m_defaults);
    m_learning.reset();
    tellChanged();
}

void MidiControls::turn(ParameterId dial, std::uint8_t value, SoftTakeover* takeover) {
    if (!m_target)
        return;
    const ParameterRange range = parameter(dial).dial;
    const float position = static_cast<float>(value) / 127.f;
    const float shown = (m_target->dialValue(dial) - range.low) / (range.high - range.low);
    if (!takeover || takeover->follows(position, std::clamp(shown, 0.f, 1.f)))
        m_target->turnDial(dial, std::lerp(range.low, range.high, position));
}

void MidiControls::bend(int bend, MIDIEndpointRef source) {
    m_bend = bend;
    m_bentBy = source;
    applyBend();
}

void MidiControls::applyBend() {
    const double semitones = m_settings.bendSemitones * (m_bend / double{kBendCentre});
    if (Notes* const notes = m_keys.notes())
        notes->setPitchBend(static_cast<float>(std::exp2(semitones / 12)));
}

void MidiControls::remove(MIDIEndpointRef source) {
    m_keys.remove(source);
    if (m_bend != 0 && m_bentBy == source)
        bend(0, 0);
}
