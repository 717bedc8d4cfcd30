#pragma once

#include "QrMidi.h"
#include "defaults/UserDefaults.h"

/// Who may play over the network: nobody, whom the player has let in, or everybody nearby.
enum class NetworkMode : std::uint8_t { off, ask, nearby };

/// What was kept; nearby if there is none, or one that makes no sense.
NetworkMode keptNetworkMode(const UserDefaults& defaults);
void keepNetworkMode(UserDefaults& defaults, NetworkMode mode);
/// Opens or closes the system's session. [main]
void useNetworkMode(QrMidi& hub, NetworkMode mode);
