#include "ChannelCopy.h"

#include <algorithm>
#include <type_traits>

namespace {

template <std::size_t N>
using Stride = std::integral_constant<std::size_t, N>;

/// Calls `work` with the stride as a constant, which lets its loop be vectorised.
template <typename Work>
void withStride(std::size_t stride, Work work) {
    if (stride == 2)
        work(Stride<2>());
    else
        work(Stride<1>());
}

}  // namespace

void ChannelCopy::pick(const float* from, std::size_t stride, std::size_t frames, float* into) {
    if (stride != 2) {
        std::copy_n(from, frames, into);
        return;
    }
    for (std::size_t i = 0; i < frames; ++i)
        into[i] = from[2 * i];
}

void ChannelCopy::pickTwice(const float* __restrict from, std::size_t stride, std::size_t frames,
                            float* __restrict into) {
    withStride(stride, [=](auto step) {
        for (std::size_t i = 0; i < frames; ++i)
            into[2 * i] = into[2 * i + 1] = from[step * i];
    });
}

void ChannelCopy::mean(const float* __restrict from, std::size_t frames, float* __restrict into) {
    for (std::size_t i = 0; i < frames; ++i)
        into[i] = (from[2 * i] + from[2 * i + 1]) * 0.5f;
}

void ChannelCopy::interleave(const float* __restrict left, std::size_t leftStride,
                             const float* __restrict right, std::size_t rightStride,
                             std::size_t frames, float* __restrict into) {
    withStride(leftStride, [=](auto leftStep) {
        withStride(rightStride, [=](auto rightStep) {
            for (std::size_t i = 0; i < frames; ++i) {
                into[2 * i] = left[leftStep * i];
                into[2 * i + 1] = right[rightStep * i];
            }
        });
    });
}

void ChannelCopy::spread(const float* from, std::size_t stride, std::size_t frames, float* into) {
    for (std::size_t i = 0; i < frames; ++i)
        into[2 * i] = from[stride * i];
}
