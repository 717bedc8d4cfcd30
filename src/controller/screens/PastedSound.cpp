#include "screens/PastedSound.h"

#include "recording/PerformanceName.h"
#include "runloop/Clock.h"
#include "text/DateText.h"
#include "wavechoice/ArrivingWave.h"
#include "wavechoice/WaveChoice.h"

std::string PastedSound::keep(const QByteArray& sound, std::string& error) {
    const std::string date = DateText::mediumDateShortTime(Clock::now());
    ArrivingWave wave(PerformanceName::of(date, "Pasted Audio - "));
    std::string notice;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(sound.constData());
    if (!wave.write({bytes, static_cast<std::size_t>(sound.size())})) {
        error = wave.writeError();
        return "";
    }
    if (!wave.check(error, notice))
        return "";
    if (!wave.settle()) {
        error = wave.writeError();
        return "";
    }
    return WaveChoice::dataFile(wave.name());
}
