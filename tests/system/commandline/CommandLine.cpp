#include "CommandLine.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "Songs.h"
#include "Sounds.h"

CommandLine::CommandLine() {
    std::filesystem::create_directory(m_scratch.file("work"));
    std::filesystem::create_directory(home());
    m_surroundings.folder = m_scratch.file("work");
    m_surroundings.environment = {
        {"HOME", home()}, {"PATH", "/usr/bin:/bin"}, {"LC_ALL", "C.UTF-8"}};
    put("song.mid", songs::small());
}

std::string CommandLine::put(const std::string& name, const std::string& bytes) const {
    std::ofstream(path(name), std::ios::binary) << bytes;
    m_put.insert(name);
    return path(name);
}

std::string CommandLine::contents(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
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
    const auto samples = sounds::rendered(contents(path("out.wav")));
    EXPECT_TRUE(samples);
    return samples.value_or(std::vector<std::int16_t>{});
}

void CommandLine::expectRefusal(const Outcome& outcome, int exitCode) const {
    EXPECT_EQ(outcome.signal, 0);
    EXPECT_EQ(outcome.exitCode, exitCode);
    EXPECT_THAT(outcome.err, IsOneLine());
    EXPECT_EQ(folder(), m_put);
}
