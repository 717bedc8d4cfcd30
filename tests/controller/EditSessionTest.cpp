#include "editing/EditSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "ManualClock.h"
#include "ScratchFolder.h"
#include "SoundFiles.h"
#include "startup/Instrument.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

/// The sound of an instrument that is edited, and kept in a data folder.
class EditSessionTest : public testing::Test, protected EditSessionDelegate {
  protected:
    EditSessionTest() {
        setenv("OMBRIX_DATA", m_folder.path().c_str(), 1);
        m_session.setDelegate(this);
    }
    void editingTold(const std::string& line) override { m_told.push_back(line); }

    std::string file(const std::string& name, std::size_t frames, std::uint16_t channels = 1) {
        std::vector<std::int16_t> samples(frames * channels);
        for (std::size_t i = 0; i < samples.size(); ++i)
            samples[i] = static_cast<std::int16_t>(i % 20000 + 100);
        SoundFiles::write(m_folder.file(name),
                          SoundFiles::wav({.channels = channels}, SoundFiles::bytes(samples)));
        return m_folder.file(name);
    }
    void useFile(const std::string& path) {
        m_waves.setWaveTo(path);
        m_session.soundChanged();
    }
    void settle() {
        while (m_session.busy() || m_session.handingOver())
            RunLoop::main().turn();
    }
    /// What every voice plays.
    std::vector<float> heard() {
        const VornWaveSequence& sound = *m_waves.currentWave();
        EXPECT_EQ(sound.blocks().size(), 1u) << "voices need one piece";
        std::vector<float> samples(sound.sampleCount());
        sound.write(sound.sampleCount(), samples.data());
        return samples;
    }
    std::vector<float> shown() {
        std::vector<float> samples(m_waves.shownWave()->sampleCount());
        m_waves.shownWave()->write(m_waves.shownWave()->sampleCount(), samples.data());
        return samples;
    }
    std::string name() { return m_waves.currentWaveFilename().value_or("none"); }
    std::vector<std::string> temporaryFiles() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_folder.path())) {
            if (entry.path().extension() == ".tmp")
                names.push_back(entry.path().filename());
        }
        return names;
    }
    /// Until the background has written, or removed, what it was asked to.
    template <typename Condition>
    void until(Condition met) {
        while (!met()) {
            m_clock.step(0.25);
        }
    }

    ManualClock m_clock;  // what is kept waits for it
    ScratchFolder m_folder;
    Instrument m_instrument;
    WaveChoice& m_waves = m_instrument.waves();
    InstanceLock m_place{m_folder.path().string()};
    UnsavedTake m_unsaved{m_place};
    EditSession m_session{m_waves, &m_unsaved};
    std::vector<std::string> m_told;
};

}  // namespace

TEST_F(EditSessionTest, isShownAtOnceHeardInOnePieceAndUndoneToTheFileItWas) {
    useFile(file("long.wav", 3'000'000));
    const auto original = m_waves.currentWave()->blocks().front()->waveOrNil();
    const std::vector<float> before = heard();
    m_session.edit(SoundEdit::crop, {1000, 2'001'000});
    m_session.edit(SoundEdit::cut, {500, 1'000'500});
    EXPECT_EQ(shown().size(), 1'000'000u);
    EXPECT_EQ(name(), "none") << "at once, so that it is saved as what it is";
    EXPECT_EQ(heard(), before) << "until it is in one piece";
    settle();
    std::vector<float> expected(before.begin() + 1000, before.begin() + 1500);
    expected.insert(expected.end(), before.begin() + 1'001'500, before.begin() + 2'001'000);
    EXPECT_EQ(heard(), expected);
    EXPECT_EQ(m_session.selection(), EditSpan::whole(1'000'000));

    m_session.undo();
    EXPECT_EQ(m_session.selection(), (EditSpan{500, 1'000'500}));
    m_session.undo();
    EXPECT_EQ(m_session.selection(), (EditSpan{1000, 2'001'000}));
    EXPECT_EQ(name(), "long.wav");
    EXPECT_EQ(m_waves.currentWave()->blocks().front()->waveOrNil(), original) << "not a copy";
    m_session.redo();
    EXPECT_EQ(m_session.history().undoName(), "Crop");
    EXPECT_EQ(m_session.history().redoName(), "Cut");
    m_waves.settle();
    EXPECT_EQ(heard(), shown()) << "whoever stores it waits for it";
    m_waves.setCurrentWaveFilename("Cropped.wav");
    m_session.edit(SoundEdit::fadeIn, {0, 100});
    settle();
    EXPECT_EQ(name(), "none");
    EXPECT_FALSE(m_session.history().canRedo());
    EXPECT_EQ(heard()[0], 0.f);
    EXPECT_EQ(heard()[100], before[1100]);
    m_session.undo();
    settle();
    EXPECT_EQ(name(), "Cropped.wav") << "it is stored already";
    EXPECT_EQ(m_waves.choices(), 1u) << "a sound that is on its way goes on";
    EXPECT_THAT(m_told, IsEmpty());
}

TEST_F(EditSessionTest, joinsWhatCanBeLoadedAndToldWhatCannot) {
    useFile(file("first.wav", 1000));
    std::vector<float> expected = heard();
    for (const std::string& path : {file("stereo.wav", 500, 2), m_folder.file("missing.wav")}) {
        m_session.join(path, {});
        m_session.edit(SoundEdit::crop, {0, 5});
        settle();
    }
    SoundFiles::write(m_folder.file("text.wav"), "no sound");
    m_session.join(m_folder.file("text.wav"), {});
    settle();
    EXPECT_THAT(m_told, ElementsAre(HasSubstr("missing.wav"), HasSubstr("text.wav")));
    const auto mixed = WaveChoice::load(m_folder.file("stereo.wav")).wave;
    expected.resize(1500);
    mixed->write(500, expected.data() + 1000);
    EXPECT_EQ(heard(), expected);
    m_session.join(file("slow.wav", 20'000'000), {});
    m_session.cancel();
    EXPECT_FALSE(m_session.busy());
    m_session.edit(SoundEdit::cut, {0, 1500});
    m_session.edit(SoundEdit::reverse, {7, 7});
    EXPECT_EQ(heard(), expected);
    EXPECT_EQ(m_told.size(), 4u);

    m_waves.useUnsaved(VornWave2::mutableWaveOfLength(EditSession::kMostFrames - 499,
                                                      StreamDescription::float32(1), "take", ""));
    m_session.join(m_folder.file("stereo.wav"), {});
    settle();
    EXPECT_THAT(m_told.back(), HasSubstr("20 minutes"));
    EXPECT_FALSE(m_session.history().canUndo());
}

TEST_F(EditSessionTest, whatIsUnderWayEndsWithItsSound) {
    const std::string first = file("first.wav", 20'000'000);
    const std::string second = file("second.wav", 1000);
    useFile(first);
    m_session.edit(SoundEdit::reverse, {0, 20'000'000});
    m_session.cancel();
    EXPECT_FALSE(m_session.history().canUndo());
    m_session.edit(SoundEdit::reverse, {0, 20'000'000});
    EXPECT_TRUE(m_session.busy());
    m_waves.setWaveTo(second);  // and nobody says so
    settle();
    EXPECT_EQ(shown().size(), 1000u);
    EXPECT_FALSE(m_session.history().canUndo());

    useFile(first);
    m_session.edit(SoundEdit::crop, {0, 15'000'000});
    EXPECT_TRUE(m_session.handingOver());
    useFile(second);
    EXPECT_EQ(name(), "second.wav");
    for (int i = 0; i < 100; ++i)
        m_clock.step(0.1);
    EXPECT_EQ(heard().size(), 1000u);
    EXPECT_EQ(shown().size(), 1000u);
    EXPECT_THAT(temporaryFiles(), IsEmpty());
}

TEST_F(EditSessionTest, withoutMemoryNothingChanges) {
    useFile(file("long.wav", 20'000'000));
    rlimit before;
    getrlimit(RLIMIT_AS, &before);
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    const rlimit tight{pages * 4096 + (48 << 20), before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_AS, &tight), 0);
    m_session.edit(SoundEdit::normalise, {0, 20'000'000});
    settle();
    m_session.edit(SoundEdit::silence, {0, 1000});
    settle();
    setrlimit(RLIMIT_AS, &before);
    EXPECT_THAT(m_told, ElementsAre(HasSubstr("memory"), HasSubstr("memory")));
    EXPECT_FALSE(m_session.history().canUndo());
    EXPECT_EQ(name(), "long.wav");
    EXPECT_NE(heard()[500], 0.f);
}

TEST_F(EditSessionTest, isKeptInTheBackgroundAndAFullDiskIsToldOnce) {
    useFile(file("sound.wav", 5000));
    m_session.edit(SoundEdit::crop, {0, 300});
    m_session.edit(SoundEdit::crop, {0, 200});
    until([&] { return !temporaryFiles().empty(); });
    EXPECT_EQ(WaveChoice::load(m_unsaved.path()).wave->sampleCount(), 200u);
    m_session.undo();
    m_session.undo();
    until([&] { return temporaryFiles().empty(); });

    signal(SIGXFSZ, SIG_IGN);
    rlimit limit;
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = 256;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    for (const std::uint32_t frames : {2000u, 1000u}) {
        m_session.edit(SoundEdit::crop, {0, frames});
        settle();
        until([&] { return !m_told.empty(); });
        for (int i = 0; i < 50; ++i)
            m_clock.step(0.1);
        EXPECT_EQ(heard().size(), frames);
    }
    EXPECT_THAT(m_told, ElementsAre(HasSubstr("-temporary-audio-recording-")));
    EXPECT_THAT(temporaryFiles(), IsEmpty());
}

TEST(EditSessionCrash, aKilledProcessLeavesItsEditedSoundBehind) {
    ScratchFolder folder;
    setenv("OMBRIX_DATA", folder.path().c_str(), 1);
    const std::string kept = folder.file("-temporary-audio-recording-.tmp");
    const pid_t child = fork();
    if (child == 0) {
        ManualClock clock;
        Instrument instrument;
        InstanceLock place(folder.path().string());
        UnsavedTake unsaved(place);
        EditSession session(instrument.waves(), &unsaved);
        instrument.waves().setWaveTo(WaveChoice::defaultSoundFile());
        session.soundChanged();
        session.edit(SoundEdit::cut, {100, 44000});
        while (!fs::exists(kept))
            clock.step(0.25);
        kill(getpid(), SIGKILL);
    }
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    InstanceLock place(folder.path().string());
    UnsavedTake unsaved(place);
    std::string error;
    ASSERT_THAT(unsaved.leftOver(), ElementsAre(kept));
    ASSERT_TRUE(unsaved.adopt(kept, error)) << error;
    EXPECT_EQ(WaveChoice::load(unsaved.path()).wave->sampleCount(), 200u);
}
