#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include "Contents.h"
#include "Process.h"
#include "ScratchFolder.h"

namespace {

using testing::HasSubstr;
namespace fs = std::filesystem;

class InstrumentProgramTest : public testing::Test {
  protected:
    /// What it says begins anew.
    std::vector<std::string> command(const std::vector<std::string>& changes,
                                     const std::vector<std::string>& arguments) const {
        fs::remove(m_config.file("said"));
        std::vector<std::string> words{"env",
                                       "-u",
                                       "DISPLAY",
                                       "-u",
                                       "WAYLAND_DISPLAY",
                                       "OMBRIX_DATA=" + m_data.path().string(),
                                       "XDG_CONFIG_HOME=" + m_config.path().string(),
                                       "XDG_RUNTIME_DIR=" + m_config.path().string()};
        words.insert(words.end(), changes.begin(), changes.end());
        words.push_back(OMBRIX_SYNTH_PROGRAM);
        words.insert(words.end(), arguments.begin(), arguments.end());
        return words;
    }
    std::string said() const { return contentsOf(m_config.file("said")); }
    int run(const std::vector<std::string>& changes, const std::vector<std::string>& arguments) {
        return Process(command(changes, arguments), m_config.file("said")).wait();
    }
    bool marker() const { return fs::exists(m_data.file(".running.marker")); }

    ScratchFolder m_data;
    ScratchFolder m_config;
};

}  // namespace

TEST_F(InstrumentProgramTest, endsCleanlyWhenItIsAskedToByASignal) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        SCOPED_TRACE(signal);
        fs::remove(m_config.file("ombrix-synth"));
        Process program(command({"QT_QPA_PLATFORM=offscreen"}, {"--device", "clock", "--verbose"}),
                        m_config.file("said"));
        for (int i = 0; i < 6000 && said().find("first frame") == std::string::npos; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        ASSERT_TRUE(marker()) << said();
        program.signal(SIGUSR1);
        program.signal(signal);
        EXPECT_EQ(program.wait(), 0) << said();
        EXPECT_FALSE(marker());
        EXPECT_TRUE(fs::exists(m_config.file("ombrix-synth"))) << "the preset in use is kept";
    }
}

TEST_F(InstrumentProgramTest, saysInOneLineWhyItDoesNotOpen) {
    for (const std::vector<std::string>& changes :
         {std::vector<std::string>{}, {"DISPLAY=:4711"}, {"WAYLAND_DISPLAY=nothing-0"}}) {
        EXPECT_EQ(run(changes, {}), 1);
        EXPECT_THAT(said(), HasSubstr("ombrix render and ombrix play"));
        EXPECT_EQ(std::ranges::count(said(), '\n'), 1) << said();
    }
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--nonsense"},
                                                      {"--device", "gramophone"},
                                                      {"--buffer-frames", "1"},
                                                      {"--device"}}) {
        EXPECT_EQ(run({}, arguments), 2);
        EXPECT_EQ(std::ranges::count(said(), '\n'), 1) << said();
    }
    EXPECT_EQ(run({}, {"--help"}), 0);
    EXPECT_FALSE(fs::exists(m_config.file("ombrix-synth")));
}
