#include "audiounits/devices/RateConverter.h"

RateConverter::RateConverter(double from, double to)
    : m_library(SampleRateLibrary::get()), m_ratio(to / from) {
    constexpr double kWidest = 256;
    const bool inRange = from > 0 && m_ratio >= 1 / kWidest && m_ratio <= kWidest;
    int error = 0;
    if (m_library && inRange)
        m_state = m_library->src_new(SRC_SINC_MEDIUM_QUALITY, 1, &error);
}

RateConverter::~RateConverter() {
    if (m_state)
        m_library->src_delete(m_state);
}

RateConverter::Step RateConverter::process(std::span<const float> in,
                                           std::span<float> out) noexcept {
    static constexpr float kNothing = 0.f;  // the library wants an address, and not one in `out`
    SRC_DATA data{};
    data.data_in = in.empty() ? &kNothing : in.data();
    data.input_frames = static_cast<long>(in.size());
    data.data_out = out.data();
    data.output_frames = static_cast<long>(out.size());
    data.src_ratio = m_ratio;
    if (m_library->src_process(m_state, &data) != 0)
        return {};
    return {static_cast<std::size_t>(data.input_frames_used),
            static_cast<std::size_t>(data.output_frames_gen)};
}
