#include "Player.h"

#include <gtest/gtest.h>

#include "audiounits/devices/AudioDevices.h"
#include "midi/MidiTimeline.h"

namespace {

constexpr std::size_t kBuffer = 512;

}  // namespace

Player::Use::Use(std::shared_ptr<ManualDevice> device) {
    AudioDevices::use(std::move(device));
}

Player::Player() {
    m_instrument.play();
}

std::vector<float> Player::listen(std::size_t frames) {
    std::vector<float> sound;
    std::vector<std::int16_t> buffer(kBuffer);
    while (sound.size() < frames) {
        m_device->render(buffer);
        for (const std::int16_t sample : buffer)
            sound.push_back(float(sample) / 32768.f);
    }
    return sound;
}

std::vector<float> Player::play(const std::string& song, double seconds) {
    std::string error;
    const auto file = MidiFile::read(song, error);
    const auto timeline = file ? MidiTimeline::make(*file, error) : std::nullopt;
    EXPECT_TRUE(timeline) << error;
    std::vector<float> sound;
    if (!timeline)
        return sound;
    const auto hear = [&](std::uint64_t until) {
        while (sound.size() < until) {
            const auto more = listen(kBuffer);
            sound.insert(sound.end(), more.begin(), more.end());
        }
    };
    for (const MidiTimelineEvent& event : timeline->events) {
        hear(event.frame);
        if (event.on)
            m_instrument.notes().midiNoteDown(event.key, event.velocity);
        else
            m_instrument.notes().midiNoteUp(event.key);
    }
    hear(timeline->endFrame + std::uint64_t(seconds * 44100));
    return sound;
}
