#pragma once

#include <string>

#include "devices/AudioChoice.h"

/// Changes what the running engine plays through, and goes back when that does not work. [main]
namespace AudioSwitch {

/// Stops the engine, plays through the wanted device, with the wanted period and input. When no
/// frame is asked for by that device in time, plays again as before and answers one line.
[[nodiscard]] std::string to(const AudioChoice& wanted);

}  // namespace AudioSwitch
