#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// Rows of the parameter table: an index into kParameters and into any table beside it. The order
/// is that of a preset's keys.
enum class ParameterId : std::uint8_t {
    grainSpeed,
    grainSize,
    preamp,
    fmFrequency,
    syncSpeed,
    grainMotion,
    echoDelay,
    echoFeedback,
    filterCutoff,
    filterResonance,
    filterBass,
    ringModFrequency,
    ringModDepth,
    distortion,
    adsrAttack,
    adsrDecay,
    adsrSustain,
    adsrRelease,
};

inline constexpr std::size_t kParameterCount = 18;

/// What each voice has, other than the envelope; the rest belongs to the effects behind them.
constexpr bool isOfVoices(ParameterId id) {
    return id <= ParameterId::grainMotion;
}
constexpr bool isOfEnvelope(ParameterId id) {
    return id >= ParameterId::adsrAttack;
}

enum class ParameterKind : std::uint8_t {
    number,  // a single-precision float, on a dial
    flag,    // the sync switch: false or true
    choice,  // the grain mode: an index
};

/// Both ends belong to it.
struct ParameterRange {
    float low;
    float high;

    constexpr bool contains(float value) const { return value >= low && value <= high; }
};

/// Between what a dial shows and what voices, units and presets hold.
struct DialMapping {
    float (*toStored)(float dial);
    float (*toDial)(float stored);
};

/// The text of a dial: a format with one floating-point placeholder for `shown` of its value.
struct DialText {
    double (*shown)(float dial);
    const char* format;
    const char* spokenFormat;
};

/// One thing that a player can set.
struct Parameter {
    ParameterId id;
    ParameterKind kind;
    std::string_view key;            // in presets: never renamed
    std::string_view dialName;       // the control; empty where there is no dial
    std::uint32_t tag;               // the dial's four-character code, 0 for none
    ParameterRange dial;             // of envelope times narrower than what can be stored
    float dialInitial;               // before any preset
    ParameterRange stored;           // what a preset may hold
    bool zeroMeansDefault;           // 0 may be stored too, whatever the range
    float storedInitial;             // of a fresh graph
    std::span<const float> notches;  // where the dial snaps: positions 0 to 1 of its sweep
    DialMapping mapping;
    DialText text;
};

/// Every parameter, by ParameterId. Dials, presets and the command line read this table; no range
/// is written anywhere else.
extern const std::array<Parameter, kParameterCount> kParameters;

/// What a stored bass delay of 0 stands for: 330 frames, in seconds.
inline constexpr float kDefaultFilterBass = float(330. / 44100.);

const Parameter& parameter(ParameterId id);
/// Null when no parameter has this preset key.
const Parameter* parameterWithKey(std::string_view key);
/// Null for 0 and for a tag that no dial has.
const Parameter* parameterWithTag(std::uint32_t tag);

/// The stored value of a dial value, as it is given to voices and units. Not limited.
float storedValue(ParameterId id, float dialValue);
/// The dial value of a stored one. A stored 0 that means the default gives the default's. Not
/// limited to the dial's range: an envelope time of 5 s stays 5.
float dialValue(ParameterId id, float storedValue);
/// The dial's text, or what a screen reader says. `synced` is added to the grain speed only.
std::string dialText(ParameterId id, float dialValue, bool spoken, bool synced = false);
