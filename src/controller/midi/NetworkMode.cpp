#include "midi/NetworkMode.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

constexpr const char* kModeKey = "midi-network";
constexpr std::array<std::string_view, 3> kModeNames{"off", "ask", "nearby"};  // by NetworkMode

}  // namespace

NetworkMode keptNetworkMode(const UserDefaults& defaults) {
    const auto name = std::ranges::find(kModeNames, defaults.string(kModeKey).value_or("nearby"));
    return name == kModeNames.end() ? NetworkMode::nearby
                                    : static_cast<NetworkMode>(name - kModeNames.begin());
}

void keepNetworkMode(UserDefaults& defaults, NetworkMode mode) {
    defaults.set(kModeKey, std::string(kModeNames[std::size_t(mode)]));
}

/// The hub lets everybody in. Where the player is asked, not even a first moment is like that.
void useNetworkMode(QrMidi& hub, NetworkMode mode) {
    if (mode != NetworkMode::ask)
        return hub.setNetworkEnabled(mode != NetworkMode::off);
    MIDINetworkSession& session = MIDINetworkSession::defaultSession();
    session.setConnectionPolicy(MIDINetworkSession::ConnectionPolicy::hostsInContactsList);
    session.setEnabled(true);
}
