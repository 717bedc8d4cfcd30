#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "Contents.h"
#include "Program.h"
#include "ScratchFolder.h"

/// A user's folder with a song in it, an empty home, and the program.
class CommandLine : public testing::Test {
  protected:
    CommandLine();

    std::string path(const std::string& name) const { return m_scratch.file("work/" + name); }
    /// Writes a file into the folder and answers its path.
    std::string put(const std::string& name, const std::string& bytes) const;
    /// Names of all that lies in the folder.
    std::set<std::string> folder() const;
    std::string home() const { return m_scratch.file("home"); }

    Outcome run(const Program::Words& words) const;
    /// `ombrix render song.mid --output out.wav --seconds 0.5 --sound "Sine Wave" ...`
    Outcome render(const Program::Words& more = {}) const;
    /// The same, with the samples that it wrote.
    std::vector<std::int16_t> sound(const Program::Words& more = {}) const;

    /// The program refused: this exit code, one line, and nothing new in the folder.
    void expectRefusal(const Outcome& outcome, int exitCode) const;

    Program::Surroundings m_surroundings;

  private:
    ScratchFolder m_scratch;
    mutable std::set<std::string> m_put;
};

/// Exactly one line for the user.
MATCHER(IsOneLine, "is one line that begins with the program's name") {
    return arg.starts_with("ombrix: ") && arg.find('\n') == arg.size() - 1 && arg.size() > 20;
}
