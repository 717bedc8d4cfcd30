#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "VornWave2.h"

/// A sound file, loaded, and its samples by frame and channel.
struct LoadedWave {
    explicit LoadedWave(const std::filesystem::path& path)
        : wave(VornWave2::initWithContentsOfFile(path.filename(), path.parent_path())) {
        std::uint32_t count = wave->sampleCount();
        std::int32_t format = 0;
        const float* data = wave->retrieveWindowAt(0, &count, &format);
        channels = format == 0 ? 1 : 2;
        frames = data ? count : 0;
        if (data)
            samples.assign(data, data + std::size_t{frames} * channels);
    }
    float at(std::size_t frame, std::size_t channel = 0) const {
        return samples[frame * channels + channel];
    }

    std::shared_ptr<VornWave2> wave;
    std::uint32_t frames = 0;
    std::uint32_t channels = 0;
    std::vector<float> samples;
};
