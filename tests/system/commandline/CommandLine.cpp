#include "CommandLine.h"

#include <filesystem>
#include <fstream>

#include "Sounds.h"

namespace {

// Three notes of 0.1 s each, one after the other.
constexpr char kSong[] =
    "MThd\0\0\0\6\0\0\0\1\0\x64"
    "MTrk\0\0\0\x1c"
    "\0\x90\x3c\x64\x14\x80\x3c\0"
    "\0\x90\x40\x64\x14\x80\x40\0"
    "\0\x90\x43\x64\x14\x80\x43\0"
    "\0\xff\x2f";  // and the end of the text is the last byte

}  // namespace

CommandLine::CommandLine() {
    std::filesystem::create_directory(m_scratch.file("work"));
    std::filesystem::create_directory(home());
    m_surroundings.folder = m_scratch.file("work");
    m_surroundings.environment = {
        {"HOME", home()}, {"PATH", "/usr/bin:/bin"}, {"LC_ALL", "C.UTF-8"}};
    put("song.mid", {kSong, sizeof kSong});
}

std::string CommandLine::put(const std::string& name, const std::string& bytes) const {
    std::ofstream(path(name), std::ios::binary) << bytes;
    m_put.insert(name);
    return path(name);
}

std::set<std::string> CommandLine::folder() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_surroundings.folder))
        names.insert(entry.path().filename());
    return names;
}

Outcome CommandLine::run(const Program::Words& words) const {
    return Program(words, m_surroundings).wait();
}

Outcome CommandLine::render(const Program::Words& more) const {
    Program::Words words{"render",    "song.mid", "--output", "out.wav",
                         "--seconds", "0.5",      "--sound",  "Sine Wave"};
    words.insert(words.end(), more.begin(), more.end());
    return run(words);
}

std::vector<std::int16_t> CommandLine::sound(const Program::Words& more) const {
    Program::Words words{"--force"};
    words.insert(words.end(), more.begin(), more.end());
    const Outcome outcome = render(words);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    const auto samples = sounds::rendered(contentsOf(path("out.wav")));
    EXPECT_TRUE(samples);
    return samples.value_or(std::vector<std::int16_t>{});
}

void CommandLine::expectRefusal(const Outcome& outcome, int exitCode) const {
    EXPECT_EQ(outcome.signal, 0);
    EXPECT_EQ(outcome.exitCode, exitCode);
    EXPECT_THAT(outcome.err, IsOneLine());
    EXPECT_EQ(folder(), m_put);
}
