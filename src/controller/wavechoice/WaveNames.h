#pragma once

#include <string>

/// Names of the user's sounds, as presets hold them and as they lie in the data folder.
namespace WaveNames {

/// Whether a plain name (without a folder prefix) may be written into the data folder: without a
/// fault (see PresetNames), not hidden, and no file of the program's own.
bool isStorable(const std::string& plainName);

/// "NAME 2.wav" for "NAME.wav" and 2.
std::string numbered(const std::string& plainName, int number);

}  // namespace WaveNames
