#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Options.h"

struct CommandText {
    const char* usage;
    const char* purpose;
};

/// What every command begins and ends with: its words read, --help answered, --verbose heeded,
/// errors told in one line.
class CommandFrame {
  public:
    CommandFrame(std::span<char*> words, const CommandText& text,
                 const std::vector<OptionRow>& options);

    /// Set when there is nothing more to do: help was shown, or the words were bad.
    const std::optional<int>& exitCode() const { return m_exitCode; }
    const Arguments& arguments() const { return *m_arguments; }

    /// Bad use or bad input.
    int refuse(const std::string& error) const;
    /// Good use that failed.
    int fail(const std::string& error) const;

  private:
    std::optional<Arguments> m_arguments;
    std::optional<int> m_exitCode;
};

/// A command's own options, then those of every command that plays the instrument.
std::vector<OptionRow> withInstrumentOptions(std::vector<OptionRow> own);

/// A finite number in C notation; none for anything else.
std::optional<double> decimalNumber(const std::string& text);
