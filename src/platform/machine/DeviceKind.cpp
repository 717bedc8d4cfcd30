#include "machine/DeviceKind.h"

#include <array>
#include <fstream>
#include <string_view>

namespace {

struct Word {
    std::string_view word;
    DeviceKind kind;
};

// The numbers are those of SMBIOS: hand held, tablet, detachable.
constexpr std::array kWords{Word{"tablet", DeviceKind::tablet}, Word{"handset", DeviceKind::phone},
                            Word{"11", DeviceKind::phone}, Word{"30", DeviceKind::tablet},
                            Word{"32", DeviceKind::tablet}};

DeviceKind named(std::string_view text) {
    for (const Word& row : kWords) {
        if (text == row.word)
            return row.kind;
    }
    return DeviceKind::computer;
}

/// Its first line that begins with `prefix`, without that and without quotes; empty for none.
std::string value(const std::string& path, std::string_view prefix) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with(prefix))
            continue;
        line.erase(0, prefix.size());
        std::erase_if(line, [](char c) { return c == '"' || c == '\'' || c == '\0'; });
        return line;
    }
    return "";
}

}  // namespace

DeviceKind deviceKind(const std::string& root) {
    std::string text = value(root + "/etc/machine-info", "CHASSIS=");
    if (text.empty())
        text = value(root + "/sys/class/dmi/id/chassis_type", "");
    if (text.empty())
        text = value(root + "/sys/firmware/devicetree/base/chassis-type", "");
    return named(text);
}
