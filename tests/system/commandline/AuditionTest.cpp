// What `ombrix audition` makes of a sound.

#include <algorithm>
#include <cstdlib>
#include <span>

#include "CommandLine.h"
#include "SoundFiles.h"
#include "Sounds.h"

using testing::HasSubstr;

namespace {

using Samples = std::vector<std::int16_t>;

constexpr std::uint32_t kFrames = 30000;

class AuditionCommand : public CommandLine {
  protected:
    AuditionCommand() { put("tone.wav", sounds::tone(kFrames)); }

    /// What `ombrix audition FILE --output out.wav ...` writes.
    Samples audition(const std::string& file, const Program::Words& more = {}) const {
        Program::Words words{"audition", file, "--output", "out.wav", "--force"};
        words.insert(words.end(), more.begin(), more.end());
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        EXPECT_EQ(outcome.err, "");
        return sounds::rendered(contentsOf(path("out.wav"))).value_or(Samples{});
    }

    const Samples m_tone = *sounds::rendered(sounds::tone(kFrames));
};

int loudest(std::span<const std::int16_t> samples) {
    int peak = 0;
    for (const std::int16_t sample : samples)
        peak = std::max(peak, std::abs(int(sample)));
    return peak;
}

}  // namespace

TEST_F(AuditionCommand, writesWhatTheFileHolds) {
    EXPECT_EQ(audition("tone.wav"), m_tone);
    for (const char* frames : {"1", "441", "8192"})
        EXPECT_EQ(audition("tone.wav", {"--buffer-frames", frames}), m_tone);
    // Half a second in, and half as loud.
    Samples half(m_tone.begin() + 22050, m_tone.end());
    EXPECT_EQ(audition("tone.wav", {"--from", "0.5"}), half);
    const Samples quiet = audition("tone.wav", {"--gain", "0.5"});
    ASSERT_EQ(quiet.size(), m_tone.size());
    for (std::size_t i = 0; i < quiet.size(); ++i)
        ASSERT_LE(std::abs(2 * quiet[i] - m_tone[i]), 1);
    EXPECT_TRUE(audition("tone.wav", {"--seconds", "0"}).empty());
}

TEST_F(AuditionCommand, loopsWithoutAGap) {
    const Samples twice = audition("tone.wav", {"--loop", "--seconds", "1.5"});
    ASSERT_EQ(twice.size(), 66150u);
    for (std::size_t i = 0; i < twice.size(); ++i)
        ASSERT_EQ(twice[i], m_tone[i % kFrames]) << i;
    // Without a loop what is wanted beyond the end is silence.
    const Samples once = audition("tone.wav", {"--seconds", "1.5"});
    EXPECT_EQ(loudest(std::span(once).subspan(kFrames)), 0);
}

TEST_F(AuditionCommand, hearsBothChannelsOfAStereoFile) {
    const std::string mono = sounds::tone(kFrames).substr(44);
    std::string stereo;
    for (std::size_t i = 0; i < mono.size(); i += 2)
        stereo += mono.substr(i, 2) + std::string(2, '\0');
    put("stereo.wav", SoundFiles::wav({.channels = 2}, stereo));
    const Samples mean = audition("stereo.wav");
    ASSERT_EQ(mean.size(), m_tone.size());
    for (std::size_t i = 0; i < mean.size(); ++i)
        ASSERT_LE(std::abs(2 * mean[i] - m_tone[i]), 1);
}

TEST_F(AuditionCommand, takesABuiltInSoundByName) {
    const Samples sine = audition("Sine Wave");
    EXPECT_EQ(sine.size(), 44100u);
    EXPECT_NEAR(loudest(sine), 16384, 16);
    EXPECT_EQ(audition("Sine Wave.wav"), sine);
}

TEST_F(AuditionCommand, scrubsFromPlaceToPlace) {
    put("long.wav", sounds::tone(88200));
    const Samples one = audition("long.wav", {"--scrub", "0.5", "--gain", "1"});
    // One grain: an eighth of a second, loudest in its middle.
    EXPECT_GE(one.size(), 5512u);
    EXPECT_LE(one.size(), 5512u + 1024);
    EXPECT_NEAR(loudest(one), 16000, 400);
    EXPECT_LT(loudest(std::span(one).first(200)), 2000);
    const Samples three = audition("long.wav", {"--scrub", "0.2,0.5,1.9", "--pace", "0.5"});
    EXPECT_NEAR(double(three.size()), 1.0 * 44100 + 5512, 1536);
    EXPECT_EQ(loudest(std::span(three).subspan(10000, 8000)), 0);
    EXPECT_GT(loudest(std::span(three).subspan(22050, 5512)), 7000);
    EXPECT_GT(loudest(std::span(three).subspan(44100, 5512)), 7000);
}

TEST_F(AuditionCommand, refusesWhatItCannotPlay) {
    put("broken.wav", "RIFFno sound at all");
    const std::vector<Program::Words> cases{
        {"audition"},
        {"audition", "tone.wav", "tone.wav"},
        {"audition", "none.wav"},
        {"audition", "broken.wav", "--output", "out.wav"},
        {"audition", "tone.wav", "--from", "0.7", "--output", "out.wav"},
        {"audition", "tone.wav", "--from", "-1"},
        {"audition", "tone.wav", "--gain", "loud"},
        {"audition", "tone.wav", "--gain", "inf"},
        {"audition", "tone.wav", "--seconds", "-1"},
        {"audition", "tone.wav", "--scrub", ""},
        {"audition", "tone.wav", "--scrub", "0.1,,0.2"},
        {"audition", "tone.wav", "--scrub", "0.1,9"},
        {"audition", "tone.wav", "--scrub", "0.1", "--pace", "0"},
        {"audition", "tone.wav", "--scrub", "0.1", "--loop"},
        {"audition", "tone.wav", "--pace", "1"},
        {"audition", "tone.wav", "--loop", "--output", "out.wav"},
        {"audition", "tone.wav", "--device", "gramophone"},
        {"audition", "tone.wav", "--device", "clock", "--output", "out.wav"},
        {"audition", "tone.wav", "--force"},
    };
    for (const Program::Words& words : cases) {
        SCOPED_TRACE(testing::PrintToString(words));
        expectRefusal(run(words), 2);
    }
    put("out.wav", "precious");
    EXPECT_THAT(run({"audition", "tone.wav", "--output", "out.wav"}).err, HasSubstr("--force"));
    EXPECT_EQ(contentsOf(path("out.wav")), "precious");
}

TEST_F(AuditionCommand, endsByItselfWithTheSound) {
    m_surroundings.environment = {{"JACK_NO_START_SERVER", "1"}};
    const Outcome outcome = run({"audition", "tone.wav", "--device", "clock"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, HasSubstr("played on clock"));
}
