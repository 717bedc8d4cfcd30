#pragma once

#include <QString>
#include <string>

#include "audiounits/devices/AudioDevice.h"

/// The state of the sound in sentences for the player. [main]
namespace AudioWords {

/// "JACK", "PulseAudio (DESCRIPTION)", "ALSA (PCM)", or what the clock is to a player.
QString deviceTitle(const AudioDeviceInfo& device);

/// What is played through, and how late that is heard; or that no device answers, where `wanted` is
/// the name that was chosen ("" any), or that one went away.
QString state(const AudioDeviceInfo& playing, const AudioDeviceState& presence,
              const std::string& wanted);

/// Whether real-time priority was granted, and how many periods were lost. Empty without a device.
QString health(const AudioDeviceInfo& playing);

/// "256 frames, 5.8 ms" of a period at a rate.
QString period(std::uint32_t frames, double rate);

}  // namespace AudioWords
