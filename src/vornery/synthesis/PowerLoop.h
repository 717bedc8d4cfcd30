#pragma once

#include <cstdint>

/// [render] Raises samples to a power from 0 to 1, keeping their signs: x becomes x^exponent, and
/// -x becomes -(x^exponent). Within 1e-6 of the value; other exponents and samples that are not
/// finite take the C library's way.
void raiseToPower(float* samples, std::uint32_t count, float exponent) noexcept;
