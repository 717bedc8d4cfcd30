#include "Options.h"

#include <getopt.h>

#include <algorithm>
#include <charconv>

namespace {

std::vector<option> longOptions(std::span<const OptionRow> rows) {
    std::vector<option> table;
    for (const OptionRow& row : rows)
        table.push_back({row.name, row.argument ? required_argument : no_argument, nullptr, 0});
    table.push_back({nullptr, 0, nullptr, 0});
    return table;
}

}  // namespace

Arguments::Arguments(std::span<char*> words, std::span<const OptionRow> rows, std::string& error) {
    const auto table = longOptions(rows);
    const int count = static_cast<int>(words.size());
    optind = 1;  // words[0] is the command's own name
    opterr = 0;
    int index = 0;
    for (int read; (read = getopt_long(count, words.data(), ":", table.data(), &index)) != -1;) {
        if (read != 0) {
            const std::string word = optopt != 0 ? std::string{'-', static_cast<char>(optopt)}
                                                 : words[static_cast<std::size_t>(optind) - 1];
            error = word + (read == ':' ? " needs a value" : " is no option, or cannot stand so");
            return;
        }
        m_options.emplace_back(table[static_cast<std::size_t>(index)].name, optarg ? optarg : "");
    }
    for (auto i = static_cast<std::size_t>(optind); i < words.size(); ++i)
        m_words.emplace_back(words[i]);
}

std::optional<std::string> Arguments::value(std::string_view option) const {
    const auto all = values(option);
    return all.empty() ? std::nullopt : std::optional(all.back());
}

std::vector<std::string> Arguments::values(std::string_view option) const {
    std::vector<std::string> found;
    for (const auto& [name, value] : m_options) {
        if (name == option)
            found.push_back(value);
    }
    return found;
}

std::string helpText(std::span<const OptionRow> rows) {
    constexpr std::size_t kColumn = 26;
    std::string text;
    for (const OptionRow& row : rows) {
        std::string left = std::string("  --") + row.name;
        if (row.argument)
            left += std::string(" ") + row.argument;
        left.resize(std::max(left.size() + 2, kColumn), ' ');
        text += left + row.help + "\n";
    }
    return text;
}

std::optional<unsigned long long> wholeNumber(const std::string& text, unsigned long long low,
                                              unsigned long long high) {
    unsigned long long number = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, failed] = std::from_chars(text.data(), end, number);
    if (failed != std::errc{} || stopped != end || number < low || number > high)
        return std::nullopt;
    return number;
}
