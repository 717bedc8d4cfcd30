#include "SineLoop.h"

#include "WideForms.h"

namespace {

// Reduction to quarter turns and polynomials in double precision, as S. Nagy and W. Dijkstra do it
// in "Optimized Routines" (Arm, 2018), whose coefficients these are.
constexpr double kQuarterTurnsPerRadian = 0x1.45f306dc9c883p+23;  // times 2^24
constexpr double kQuarterTurn = 0x1.921fb54442d18p+0;
constexpr double kSine[] = {-0x1.555545995a603p-3, 0x1.1107605230bc4p-7, -0x1.994eb3774cf24p-13};
constexpr double kCosine[] = {-0x1.ffffffd0c621cp-2, 0x1.55553e1068f19p-5, -0x1.6c087e89a359dp-10,
                              0x1.99343027bf8c3p-16};

}  // namespace

OMBRIX_WIDE_FORMS
void sines(const float* __restrict phases, float* __restrict out, std::uint32_t count) noexcept {
    const auto n = static_cast<std::int32_t>(count);
    for (std::int32_t k = 0; k < n; ++k) {
        const double phase = phases[k];
        const auto scaled = static_cast<std::int32_t>(phase * kQuarterTurnsPerRadian);
        const std::int32_t quarter = (scaled + 0x800000) >> 24;
        const double x = phase - quarter * kQuarterTurn;
        const double x2 = x * x;
        const double x3 = x * x2;
        const double x4 = x2 * x2;
        const double sine = (x + x3 * kSine[0]) + (x3 * x2) * (kSine[1] + x2 * kSine[2]);
        const double cosine = ((1.0 + x2 * kCosine[0]) + x4 * kCosine[1]) +
                              (x4 * x2) * (kCosine[2] + x2 * kCosine[3]);
        const auto value = static_cast<float>((quarter & 1) != 0 ? cosine : sine);
        out[k] = (quarter & 2) != 0 ? -value : value;
    }
}
