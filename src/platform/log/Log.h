#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// The program's diary: lines for developers and tests, kept in memory (the latest ten thousand)
/// and shown on stderr only when verbose. Errors meant for the user do not go here.
class Log {
  public:
    /// printf-style; one line. [any thread] but [render].
    [[gnu::format(printf, 1, 2)]] static void line(const char* format, ...);

    /// Logs a failed platform call as "AU Error %d / %x"; a status of 0 logs nothing.
    /// [any thread] In a render it only fills a lock-free slot that `drain` formats later; when all
    /// slots are taken the line is dropped and counted.
    static void status(std::int32_t status) noexcept;

    /// Formats what renders have said since the last call. [main]
    static void drain();

    static void setVerbose(bool verbose);
    static std::vector<std::string> lines();
    static void clear();
};

/// One line for the user on stderr, always shown, prefixed with the program's name.
[[gnu::format(printf, 1, 2)]] void tellUser(const char* format, ...);

/// Ends the process after an error that leaves nothing to go on with: prints the text and the
/// place, in release builds too, and aborts.
[[noreturn]] void stopProgram(const char* text, const char* function, const char* source, int line);
