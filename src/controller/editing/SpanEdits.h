#pragma once

#include "editing/SoundCopy.h"

/// Edits that make new samples, of the span that they touch alone. [any thread but render]
namespace SpanEdits {

enum class Kind {
    fadeIn,
    fadeOut,
    normalise,
    reverse,
};

/// Level of a fade at `place`, 0 (silent) to 1: a raised cosine. It leaves silence and comes to the
/// full level without a corner, so that neither end is heard, passes -6 dB in its middle, and so
/// sounds even; a straight line seems to rush at its silent end, and curves of equal power, made
/// for two sounds that cross, start there with a jolt.
float fadeGain(double place);

/// The span's frames after the edit, as a wave in the sound's channels. Normalising scales the
/// loudest sample of all channels to 1; not a number counts as 0 there, and silence stays silence.
/// The sound is read on this thread.
SoundCopy::Copy edited(const VornWaveSequence& sound, const EditSpan& span, Kind kind,
                       std::uint32_t channels, EditWatch& watch);

}  // namespace SpanEdits
