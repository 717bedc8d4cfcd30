#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "storage/AsideFile.h"

/// A sound from elsewhere on its way into the data folder: written aside, tried, then given a name
/// that is free. Nothing that lies there is ever replaced, and a sound that did not arrive leaves
/// nothing. One thread at a time.
class ArrivingWave {
  public:
    /// Makes the data folder if it is not there.
    explicit ArrivingWave(const std::string& plainName);

    /// For a sound file of that path: under its own name where a file of ours may have it.
    static std::string nameFor(const std::string& path);

    bool write(std::span<const std::uint8_t> bytes) { return m_aside.write(bytes); }
    const std::string& writeError() const { return m_aside.error(); }

    /// Writes a whole file. False when it cannot be read (see `error`) or written.
    bool copy(const std::string& path, std::string& error);

    /// Loads what was written. `error` says why it cannot be played, `notice` what is amiss
    /// although it can; either is one line or empty.
    bool check(std::string& error, std::string& notice);

    /// Gives it a place in the data folder: under its own name, or the first of "NAME 2.wav" and so
    /// on that is neither a user's sound nor a shipped one, unless the very same bytes have that
    /// name already. False when it cannot be written; see `writeError`.
    bool settle();
    /// The file name that it has, after `settle` for good.
    const std::string& name() const { return m_name; }
    /// Takes it away again, if it was not there before.
    void withdraw();

  private:
    std::string m_name;
    AsideFile m_aside;
    std::string m_settled;  // path of what `settle` has added
};
