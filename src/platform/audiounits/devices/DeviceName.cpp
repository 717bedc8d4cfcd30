#include "audiounits/devices/DeviceName.h"

#include <algorithm>
#include <array>

namespace {

struct Row {
    std::string_view name;
    DeviceName::Backend backend;
    bool hasDevices;
};

constexpr std::array kRows{
    Row{"jack", DeviceName::Backend::jack, false},
    Row{"pulse", DeviceName::Backend::pulse, true},
    Row{"alsa", DeviceName::Backend::alsa, true},
    Row{"clock", DeviceName::Backend::clock, false},
};
constexpr std::size_t kLongest = 256;

bool isPlain(std::string_view text) {
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 127; };
    return text.size() <= kLongest && std::ranges::none_of(text, isControl);
}

}  // namespace

std::optional<DeviceName> DeviceName::parse(std::string_view text, std::string& error) {
    if (text.empty())
        return DeviceName{};
    const std::size_t colon = text.find(':');
    const std::string_view device = colon == text.npos ? "" : text.substr(colon + 1);
    const auto row = std::ranges::find(kRows, text.substr(0, colon), &Row::name);
    const bool wellFormed = colon == text.npos || (row != kRows.end() && row->hasDevices);
    if (row == kRows.end() || !wellFormed || (colon != text.npos && device.empty()) ||
        !isPlain(text)) {
        error = isPlain(text) ? text : "that";
        error +=
            ": no such audio device; use jack, pulse, pulse:SINK, alsa, alsa:PCM or clock, as "
            "\"ombrix devices\" lists them";
        return std::nullopt;
    }
    return DeviceName{row->backend, std::string(device)};
}
