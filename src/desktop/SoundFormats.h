#pragma once

#include <QString>
#include <algorithm>
#include <array>

/// Names under which the clipboard holds what we send and take.
namespace SoundFormats {

/// A WAV file's bytes; programs do not agree on one name.
inline constexpr std::array kWav{"audio/x-wav", "audio/wav", "audio/wave", "audio/vnd.wave"};
/// "copy", then a line for each file: what file managers paste from.
inline constexpr const char* kCopiedFiles = "x-special/gnome-copied-files";

inline bool isWav(const QString& format) {
    return std::ranges::any_of(kWav, [&](const char* wav) { return format == QLatin1String(wav); });
}

}  // namespace SoundFormats
