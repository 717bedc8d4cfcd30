#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The stable name of a device, as users write it: a back end, and where it has several devices
/// also which: "jack", "pulse", "pulse:SINK", "alsa", "alsa:PCM", "clock". A PCM may hold colons.
struct DeviceName {
    enum class Backend { automatic, jack, pulse, alsa, clock };

    Backend backend = Backend::automatic;
    std::string device;  // "" is the back end's own default

    /// "" is automatic. Nothing, with one line in `error`, for a name that is none.
    static std::optional<DeviceName> parse(std::string_view text, std::string& error);
};
