#pragma once

#include <string>
#include <vector>

#include "parameters/PresetList.h"

/// A preset store's file as it was read once. A plain value.
struct PresetFile {
    enum class State {
        read,
        missing,
        unavailable,  // what it holds is not known: no permission, an I/O error
        broken,       // it holds no presets, or more than can be read
    };

    State state = State::missing;
    PresetList list;                   // empty unless read
    std::vector<std::string> repairs;  // a line each
    std::string error;                 // one line that begins with the path, unless read

    /// Changes nothing, and sees the old file or the new one while another process saves.
    static PresetFile read(const std::string& path);
};
