#pragma once

#include <QByteArray>
#include <string>

/// A sound that came as bytes and is to become a file. [main]
namespace PastedSound {

/// Keeps a WAV file's bytes in the data folder as "Pasted Audio - DATE.wav", or " 2" and so on
/// behind that. Answers its path; empty, with one line in `error`, when it is no sound or cannot be
/// written, and then nothing is left behind.
std::string keep(const QByteArray& sound, std::string& error);

}  // namespace PastedSound
