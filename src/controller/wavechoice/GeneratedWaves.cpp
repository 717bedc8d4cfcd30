#include "wavechoice/GeneratedWaves.h"

#include <cmath>

namespace {

constexpr float kPitch = 440.f;  // hertz
constexpr float kRate = 44100.f;
constexpr float kAmplitude = 0.5f;
constexpr float kTwoPi = 6.2831855f;

/// Where sample i lies in its period, [0, 1).
float phase(std::uint32_t i) {
    const float periods = static_cast<float>(i) * kPitch / kRate;
    return periods - std::trunc(periods);
}

template <typename Shape>
void fill(float* into, std::uint32_t length, Shape shape) {
    for (std::uint32_t i = 0; i < length; ++i)
        into[i] = shape(phase(i));
}

float triangle(float f) {
    if (f < 0.5f)
        return (1.f - 4.f * f) * kAmplitude;
    const float d = 2.f * (f - 0.5f);
    return (d - (1.f - d)) * kAmplitude;
}

}  // namespace

void GeneratedWaves::makeSineInto(float* into, std::uint32_t length) {
    for (std::uint32_t i = 0; i < length; ++i)
        into[i] = std::sin(static_cast<float>(i) * kTwoPi * kPitch / kRate) * kAmplitude;
}

void GeneratedWaves::makeSquareInto(float* into, std::uint32_t length) {
    fill(into, length, [](float f) { return f < 0.5f ? kAmplitude : -kAmplitude; });
}

void GeneratedWaves::makeTriangleInto(float* into, std::uint32_t length) {
    fill(into, length, triangle);
}

void GeneratedWaves::makeSawtoothInto(float* into, std::uint32_t length) {
    // A blend from 1 to 0, not from 1 to -1.
    fill(into, length, [](float f) { return ((1.f - f) + f * 0.f) * kAmplitude; });
}

GeneratedWaves::Generator GeneratedWaves::generatorNamed(std::string_view name) {
    if (name == "Sine Wave")
        return makeSineInto;
    if (name == "Square Wave")
        return makeSquareInto;
    if (name == "Triangle Wave")
        return makeTriangleInto;
    if (name == "Sawtooth Wave")
        return makeSawtoothInto;
    return nullptr;
}
