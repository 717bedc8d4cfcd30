#pragma once

#include <cmath>
#include <span>

/// The sum of amplitudes[k] sin((k + 1) phase), with two sines however many harmonics there are:
/// C. W. Clenshaw, "A note on the summation of Chebyshev series", 1955. The phase is in radians.
inline double harmonics(std::span<const double> amplitudes, double phase) {
    const double twice = 2 * std::cos(phase);
    double later = 0, last = 0;
    for (std::size_t k = amplitudes.size(); k-- > 0;) {
        const double next = amplitudes[k] + twice * later - last;
        last = later;
        later = next;
    }
    return later * std::sin(phase);
}
