#include "recording/UnsavedTake.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>

#include "ScratchFolder.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::shared_ptr<VornWaveSequence> takeOf(std::uint32_t frames) {
    const std::vector<float> samples(frames, 0.5f);
    return VornWaveSequence::sequenceWithWave(VornWave2::initWithCopyOfData(
        samples.data(), frames, StreamDescription::float32(1), "Recording"));
}

std::uint32_t framesOf(const std::string& path) {
    return WaveChoice::load(path).wave->sampleCount();
}

/// Another instance of the program, which does its work and then lives until it is killed.
class Neighbour {
  public:
    explicit Neighbour(const std::function<void()>& work) {
        int ready[2];
        EXPECT_EQ(pipe(ready), 0);
        m_process = fork();
        if (m_process == 0) {
            work();
            [[maybe_unused]] const auto told = write(ready[1], "x", 1);
            for (;;)
                pause();
        }
        char byte = 0;
        EXPECT_EQ(read(ready[0], &byte, 1), 1);
        close(ready[0]);
        close(ready[1]);
    }
    ~Neighbour() { kill(); }
    void kill() {
        if (m_process > 0) {
            ::kill(m_process, SIGKILL);
            waitpid(m_process, nullptr, 0);
        }
        m_process = 0;
    }

  private:
    pid_t m_process = 0;
};

class UnsavedTakeTest : public testing::Test {
  protected:
    UnsavedTakeTest() { setenv("OMBRIX_DATA", m_folder.path().c_str(), 1); }
    std::string folder() const { return m_folder.path().string(); }
    ScratchFolder m_folder;
};

}  // namespace

TEST_F(UnsavedTakeTest, survivesItsProcessAndIsTakenOverOnlyThen) {
    const std::string theirs = m_folder.file("-temporary-audio-recording-.tmp");
    Neighbour neighbour([&] {
        static InstanceLock place(folder());
        static UnsavedTake unsaved(place);
        if (!unsaved.store(*takeOf(100)).empty() || unsaved.path() != theirs)
            _exit(1);
    });
    InstanceLock place(folder());
    UnsavedTake unsaved(place);
    EXPECT_THAT(unsaved.leftOver(), IsEmpty());
    std::string error;
    EXPECT_FALSE(unsaved.adopt(theirs, error));
    EXPECT_NE(error, "");
    ASSERT_EQ(unsaved.store(*takeOf(200)), "");
    EXPECT_EQ(unsaved.path(), m_folder.file("-temporary-audio-recording- 2.tmp"));
    ASSERT_EQ(unsaved.store(*takeOf(300)), "");  // in place of the one before
    EXPECT_EQ(framesOf(unsaved.path()), 300u);

    neighbour.kill();
    EXPECT_THAT(unsaved.leftOver(), ElementsAre(theirs));
    ASSERT_EQ(unsaved.nameIt(m_folder.file("Mine.wav"), FileNames::Existing::keep), "");
    EXPECT_EQ(framesOf(m_folder.file("Mine.wav")), 300u);
    ASSERT_TRUE(unsaved.adopt(theirs, error)) << error;
    EXPECT_THAT(unsaved.leftOver(), IsEmpty());
    EXPECT_NE(unsaved.nameIt(m_folder.file("Mine.wav"), FileNames::Existing::keep), "");
    EXPECT_EQ(framesOf(unsaved.path()), 100u);
    unsaved.forget();
    EXPECT_FALSE(std::filesystem::exists(m_folder.file("-temporary-audio-recording- 2.tmp")));
}

TEST_F(UnsavedTakeTest, isNotWrittenOverByTheNextLifeOfItsPlace) {
    Neighbour([&] {
        static InstanceLock place(folder());
        static UnsavedTake unsaved(place);
        if (!unsaved.store(*takeOf(100)).empty())
            _exit(1);
    });
    InstanceLock place(folder());
    ASSERT_EQ(place.ordinal(), 1);
    UnsavedTake unsaved(place);
    ASSERT_EQ(unsaved.store(*takeOf(200)), "");
    EXPECT_THAT(unsaved.leftOver(), ElementsAre(WaveChoice::temporaryRecordingFile()));
    EXPECT_EQ(framesOf(WaveChoice::temporaryRecordingFile()), 100u);
    EXPECT_EQ(framesOf(unsaved.path()), 200u);
}
