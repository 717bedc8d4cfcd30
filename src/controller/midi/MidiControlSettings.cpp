#include "midi/MidiControlSettings.h"

#include <algorithm>
#include <array>

namespace {

constexpr const char* kMidiControls = "midi-controls";  // in the user defaults

constexpr std::array<const char*, 4> kCurveNames = {"linear", "soft", "hard", "fixed"};

template <typename Value>
void take(Value& into, const Value* stored) {
    if (stored)
        into = *stored;
}

/// What is too large for an int makes no sense either.
void take(int& into, const std::int64_t* stored) {
    if (stored)
        into = static_cast<int>(std::clamp<std::int64_t>(*stored, -1, 1000));
}

void take(VelocityCurve& into, const std::string* stored) {
    const auto found = stored ? std::ranges::find(kCurveNames, *stored) : kCurveNames.end();
    if (found != kCurveNames.end())
        into = static_cast<VelocityCurve>(found - kCurveNames.begin());
}

void take(std::optional<ParameterId>& into, const std::string* stored) {
    if (const Parameter* const row = stored ? parameterWithKey(*stored) : nullptr)
        into = row->id;
}

}  // namespace

MidiControlSettings MidiControlSettings::repaired() const {
    const MidiControlSettings initial;
    MidiControlSettings sane = *this;
    if (channel < kAllChannels || channel > 16)
        sane.channel = initial.channel;
    if (bendSemitones < 0 || bendSemitones > kMostBendSemitones)
        sane.bendSemitones = initial.bendSemitones;
    if (modulation && parameter(*modulation).dialName.empty())
        sane.modulation.reset();
    return sane;
}

MidiControlSettings MidiControlSettings::load(const UserDefaults& defaults) {
    MidiControlSettings settings;
    const auto stored = defaults.dictionary(kMidiControls);
    if (!stored)
        return settings;
    const auto at = [&](const char* key) {
        const auto found = stored->find(key);
        return found == stored->end() ? PropertyListValue("") : found->second;
    };
    take(settings.enabled, at("enabled").boolean());
    take(settings.channel, at("channel").integer());
    take(settings.bendSemitones, at("bend-semitones").integer());
    take(settings.modulation, at("modulation").string());
    take(settings.curve, at("velocity-curve").string());
    return settings.repaired();
}

void MidiControlSettings::keep(UserDefaults& defaults) const {
    PropertyListValue::Dictionary kept{
        {"enabled", enabled},
        {"channel", channel},
        {"bend-semitones", bendSemitones},
        {"velocity-curve", kCurveNames[static_cast<std::size_t>(curve)]},
    };
    if (modulation)
        kept.emplace("modulation", std::string(parameter(*modulation).key));
    defaults.set(kMidiControls, std::move(kept));
}
