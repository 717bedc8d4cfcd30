#pragma once

#include <cstdint>
#include <string_view>

/// The four built-in waves: a 440 Hz tone at 44100 Hz, amplitude 0.5, computed in single precision
/// from the first sample on. Each fills `length` samples.
namespace GeneratedWaves {

inline constexpr std::uint32_t kLength = 44100;

using Generator = void (*)(float* into, std::uint32_t length);

void makeSineInto(float* into, std::uint32_t length);
void makeSquareInto(float* into, std::uint32_t length);
void makeTriangleInto(float* into, std::uint32_t length);
/// Falls from 0.5 to just above 0 and never goes negative, unlike the other three.
void makeSawtoothInto(float* into, std::uint32_t length);

/// The generator of a built-in wave by its name, "Sine Wave" and so on; null for any other name.
Generator generatorNamed(std::string_view name);

}  // namespace GeneratedWaves
