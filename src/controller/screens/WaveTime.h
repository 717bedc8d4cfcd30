#pragma once

#include <QString>

/// Places and lengths of sounds, as they are shown.
namespace WaveTime {

/// "m:ss.mmm" of frames at 44100 Hz.
QString text(int frames);

}  // namespace WaveTime
