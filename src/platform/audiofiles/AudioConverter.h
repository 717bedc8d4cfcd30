#pragma once

#include <cstdint>

#include "audiofiles/AudioFile.h"
#include "audiounits/AudioUnitTypes.h"

/// The audio converter: from what the audio file service hands out to packed native 16-bit integers
/// or floats of one or two channels, at another rate where asked. Calls return a status and throw
/// nothing. [any thread but render; one thread at a time per converter]
///
/// Order of work: samples become floats in [-1, 1] (not-a-number and infinite ones 0), more than
/// two channels fold to two (left: mean of channels 0, 2, ...; right: mean of 1, 3, ...), the rate
/// changes channel by channel (libswresample with its default options), and one rounding to 16
/// bits, to nearest even and saturated, ends it. Without a change of rate all but the last step is
/// exact. Nothing is dithered.

struct OpaqueAudioConverter;
using AudioConverterRef = OpaqueAudioConverter*;

inline constexpr OSStatus kAudioConverterErr_FormatNotSupported =
    static_cast<OSStatus>(fourCC("fmt?"));
inline constexpr OSStatus kAudioConverterErr_OutputSampleRateOutOfRange =
    static_cast<OSStatus>(fourCC("!srt"));
inline constexpr OSStatus kAudioConverterErr_InvalidOutputSize =
    static_cast<OSStatus>(fourCC("otsz"));

/// Supplies input: *ioPackets is the number wanted, then the number supplied; 0 ends the input for
/// good. `ioData` gets the place of the packets, which must stay until the next call.
/// `outDescriptions` is null unless the packets have to be described.
using AudioConverterComplexInputDataProc =
    OSStatus (*)(AudioConverterRef converter, std::uint32_t* ioPackets, AudioBufferList* ioData,
                 AudioStreamPacketDescription** outDescriptions, void* userData);

/// On failure *converter is null.
OSStatus AudioConverterNew(const StreamDescription* source, const StreamDescription* target,
                           AudioConverterRef* converter);

/// Fills the first buffer of `output` with *ioPackets frames; *ioPackets becomes those made. Fewer
/// than asked: the input has ended and nothing is left inside. A failure of the input procedure is
/// handed on.
OSStatus AudioConverterFillComplexBuffer(AudioConverterRef converter,
                                         AudioConverterComplexInputDataProc inputProc,
                                         void* userData, std::uint32_t* ioPackets,
                                         AudioBufferList* output,
                                         AudioStreamPacketDescription* descriptions);

OSStatus AudioConverterDispose(AudioConverterRef converter);
