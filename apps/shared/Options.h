#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// One option of a command. Options without an argument are switches.
struct OptionRow {
    const char* name;      // without the dashes
    const char* argument;  // how the help calls its argument; null for a switch
    const char* help;
};

/// What a user typed behind a command's name.
class Arguments {
  public:
    /// Reads options in any order, between and behind the other words. On bad use `error` is one
    /// line and the result is worthless.
    Arguments(std::span<char*> words, std::span<const OptionRow> rows, std::string& error);

    const std::vector<std::string>& words() const { return m_words; }
    bool has(std::string_view option) const { return value(option).has_value(); }
    /// The last one given.
    std::optional<std::string> value(std::string_view option) const;
    std::vector<std::string> values(std::string_view option) const;

  private:
    std::vector<std::string> m_words;
    std::vector<std::pair<std::string, std::string>> m_options;
};

/// The table as it stands in a help text, a line each.
std::string helpText(std::span<const OptionRow> rows);

/// A whole number in [low, high]; none if the text is anything else.
std::optional<unsigned long long> wholeNumber(const std::string& text, unsigned long long low,
                                              unsigned long long high);
