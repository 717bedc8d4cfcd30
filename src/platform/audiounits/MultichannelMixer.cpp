#include "audiounits/MultichannelMixer.h"

void MultichannelMixer::add(const Pulled& bus, Workspace& workspace) noexcept {
    auto& channel = workspace.channel;
    for (std::uint32_t c = 0; c < 2; ++c) {
        StreamConversion::read(bus.list, bus.format, c, {channel.data(), bus.frames});
        for (std::uint32_t i = 0; i < bus.frames; ++i)
            workspace.sums[c][i] += channel[i];
    }
}
