#pragma once

#include <cstdint>

#include "audiounits/FourCharCode.h"

/// Bits of StreamDescription::mFormatFlags.
inline constexpr std::uint32_t kAudioFormatFlagIsFloat = 1;
inline constexpr std::uint32_t kAudioFormatFlagIsBigEndian = 2;
inline constexpr std::uint32_t kAudioFormatFlagIsSignedInteger = 4;
inline constexpr std::uint32_t kAudioFormatFlagIsPacked = 8;
inline constexpr std::uint32_t kAudioFormatFlagIsNonInterleaved = 32;

inline constexpr std::uint32_t kAudioFormatLinearPCM = fourCC("lpcm");

/// Rate of the whole graph, in frames per second.
inline constexpr double kGraphRate = 44100.0;

/// Format of an audio stream. A default-constructed one has 0 channels: not yet known, and every
/// user overwrites it before handing it on.
struct StreamDescription {
    double mSampleRate = 0.0;  // frames per second
    std::uint32_t mFormatID = kAudioFormatLinearPCM;
    std::uint32_t mFormatFlags = kAudioFormatFlagIsSignedInteger | kAudioFormatFlagIsPacked |
                                 kAudioFormatFlagIsNonInterleaved;
    std::uint32_t mBytesPerPacket = 2;
    std::uint32_t mFramesPerPacket = 1;
    std::uint32_t mBytesPerFrame = 2;
    std::uint32_t mChannelsPerFrame = 0;
    std::uint32_t mBitsPerChannel = 16;
    std::uint32_t mReserved = 0;

    /// Packed 32-bit float, interleaved, native byte order.
    static constexpr StreamDescription float32(std::uint32_t channels, double rate = kGraphRate) {
        return {rate,
                kAudioFormatLinearPCM,
                kAudioFormatFlagIsFloat | kAudioFormatFlagIsPacked,
                4 * channels,
                1,
                4 * channels,
                channels,
                32,
                0};
    }
    /// Packed signed 16-bit integers, interleaved, native byte order.
    static constexpr StreamDescription sint16(std::uint32_t channels, double rate = kGraphRate) {
        return {rate,
                kAudioFormatLinearPCM,
                kAudioFormatFlagIsSignedInteger | kAudioFormatFlagIsPacked,
                2 * channels,
                1,
                2 * channels,
                channels,
                16,
                0};
    }

    constexpr bool isFloat() const { return (mFormatFlags & kAudioFormatFlagIsFloat) != 0; }
    constexpr bool isInterleaved() const {
        return (mFormatFlags & kAudioFormatFlagIsNonInterleaved) == 0;
    }

    /// All fields but the reserved word.
    friend constexpr bool operator==(const StreamDescription& a, const StreamDescription& b) {
        return a.mSampleRate == b.mSampleRate && a.mFormatID == b.mFormatID &&
               a.mFormatFlags == b.mFormatFlags && a.mBytesPerPacket == b.mBytesPerPacket &&
               a.mFramesPerPacket == b.mFramesPerPacket && a.mBytesPerFrame == b.mBytesPerFrame &&
               a.mChannelsPerFrame == b.mChannelsPerFrame && a.mBitsPerChannel == b.mBitsPerChannel;
    }
};
static_assert(sizeof(StreamDescription) == 40, "handed to properties as 40 bytes");
