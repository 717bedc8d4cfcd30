#pragma once

#include <cstddef>

/// Copies of 32-bit float samples from one layout to another, `frames` frames each. Source and
/// target never overlap. [any thread]
namespace ChannelCopy {

/// One float per frame, picked at a stride of one or two floats.
void pick(const float* from, std::size_t stride, std::size_t frames, float* into);
/// The same, each in both channels of stereo.
void pickTwice(const float* from, std::size_t stride, std::size_t frames, float* into);
/// Stereo to (left + right) x 0.5.
void mean(const float* from, std::size_t frames, float* into);
/// Two channels, each at a stride of one or two floats, to stereo.
void interleave(const float* left, std::size_t leftStride, const float* right,
                std::size_t rightStride, std::size_t frames, float* into);
/// One channel at a stride of one or two floats into every other float.
void spread(const float* from, std::size_t stride, std::size_t frames, float* into);

}  // namespace ChannelCopy
