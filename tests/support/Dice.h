#pragma once

#include <random>
#include <vector>

/// Random input, the same for the same seed.
class Dice {
  public:
    explicit Dice(unsigned seed) : m_engine(seed) {}
    float between(float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(m_engine);
    }
    bool oneIn(int n) { return below(n) == 0; }
    int below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_engine); }
    template <typename T, std::size_t N>
    T of(const T (&choices)[N]) {
        return choices[below(static_cast<int>(N))];
    }
    std::vector<float> noise(std::size_t count, float level = 1.f) {
        std::vector<float> samples(count);
        for (float& sample : samples)
            sample = between(-level, level);
        return samples;
    }

  private:
    std::mt19937 m_engine;
};
