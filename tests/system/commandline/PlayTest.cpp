// Playing and listing where there is nothing to play through. Real servers have tests of their own.

#include "CommandLine.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class WithoutServers : public CommandLine {
  protected:
    WithoutServers() {
        m_surroundings.environment = {{"JACK_NO_START_SERVER", "1"},
                                      {"JACK_DEFAULT_SERVER", "ombrix-none"},
                                      {"PULSE_SERVER", "unix:/nonexistent"},
                                      {"ALSA_CONFIG_PATH", "/dev/null"}};
    }
};

}  // namespace

TEST_F(WithoutServers, playsByTheClockAndSaysSoOnce) {
    const Outcome outcome = run({"play", "song.mid", "--sound", "Sine Wave"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.err, AllOf(IsOneLine(), HasSubstr("no sound device")));
    expectRefusal(run({"play", "none.mid"}), 2);
}

TEST_F(WithoutServers, listsTheClock) {
    for (const auto& words : {Program::Words{"devices"}, Program::Words{"devices", "--json"}}) {
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_THAT(outcome.out, HasSubstr("clock"));
        EXPECT_THAT(outcome.err, IsEmpty());
    }
    EXPECT_THAT(run({"devices", "--json"}).out,
                AllOf(testing::StartsWith("{"), HasSubstr("\"rate\"")));
}
