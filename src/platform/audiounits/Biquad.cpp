#include "audiounits/Biquad.h"

#include <cmath>
#include <complex>
#include <numbers>

#include "audiounits/StreamDescription.h"

namespace {

double radiansPerFrame(double hertz) {
    return 2 * std::numbers::pi * hertz / kGraphRate;
}

double amplitude(double decibels) {
    return std::pow(10.0, decibels / 40);
}

Biquad normalised(double b0, double b1, double b2, double a0, double a1, double a2) {
    return {b0 / a0, b1 / a0, b2 / a0, a1 / a0, a2 / a0};
}

// `side` is 1 for the low shelf and -1 for the high one, which is its mirror image.
Biquad shelf(double hertz, double decibels, double side) {
    const double a = amplitude(decibels);
    const double w = radiansPerFrame(hertz);
    const double cosine = side * std::cos(w);
    const double slope = std::sqrt(a) * std::sin(w) * std::numbers::sqrt2;  // as steep as can be
    const double sum = a + 1;
    const double difference = a - 1;
    return normalised(a * (sum - difference * cosine + slope),
                      side * 2 * a * (difference - sum * cosine),
                      a * (sum - difference * cosine - slope), sum + difference * cosine + slope,
                      side * -2 * (difference + sum * cosine), sum + difference * cosine - slope);
}

}  // namespace

Biquad Biquad::peak(double hertz, double decibels) {
    const double a = amplitude(decibels);
    const double w = radiansPerFrame(hertz);
    const double alpha = std::sin(w) / (2 * std::numbers::sqrt2);  // one octave wide
    const double middle = -2 * std::cos(w);
    return normalised(1 + alpha * a, middle, 1 - alpha * a, 1 + alpha / a, middle, 1 - alpha / a);
}

Biquad Biquad::lowShelf(double hertz, double decibels) {
    return shelf(hertz, decibels, 1);
}

Biquad Biquad::highShelf(double hertz, double decibels) {
    return shelf(hertz, decibels, -1);
}

double Biquad::decibelsAt(double hertz) const {
    const std::complex<double> z = std::polar(1.0, -radiansPerFrame(hertz));
    return 10 * std::log10(std::norm(b0 + z * (b1 + z * b2)) / std::norm(1.0 + z * (a1 + z * a2)));
}
