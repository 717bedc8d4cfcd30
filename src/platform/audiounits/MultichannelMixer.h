#pragma once

#include "audiounits/BusMixer.h"

/// Sums its buses as they are. A mono bus is heard on every output channel; a stereo bus in a mono
/// output is the mean of its channels. A single 16-bit mono bus passes bit for bit.
class MultichannelMixer final : public BusMixer {
    void add(const Pulled& bus, Workspace& workspace) noexcept override;
    bool leavesAlone(AudioUnitElement) noexcept override { return true; }
};
