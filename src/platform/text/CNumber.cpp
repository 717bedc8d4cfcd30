#include "text/CNumber.h"

#include <locale.h>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr std::size_t kShownBytes = 60;

locale_t cLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

/// Puts the calling thread into the C locale while it lives.
class CLocaleScope {
  public:
    CLocaleScope() : m_before(uselocale(cLocale())) {}
    ~CLocaleScope() { uselocale(m_before); }
    CLocaleScope(const CLocaleScope&) = delete;
    CLocaleScope& operator=(const CLocaleScope&) = delete;

  private:
    locale_t m_before;
};

}  // namespace

std::optional<double> numberFromText(std::string_view text) {
    const std::string terminated(text);
    char* end = nullptr;
    const double number = strtod_l(terminated.c_str(), &end, cLocale());
    if (terminated.empty() || end != terminated.c_str() + terminated.size())
        return std::nullopt;
    return number;
}

std::string formattedNumber(const char* format, double number) {
    const CLocaleScope scope;
    std::array<char, 400> text{};  // the largest double has 309 digits before its point
    std::snprintf(text.data(), text.size(), format, number);
    return text.data();
}

std::string oneLine(std::string_view text) {
    const bool cut = text.size() > kShownBytes;
    if (cut) {
        text = text.substr(0, kShownBytes);
        while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80)
            text.remove_suffix(1);
        if (!text.empty() && static_cast<unsigned char>(text.back()) >= 0xC0)
            text.remove_suffix(1);
    }
    std::string line(text);
    for (std::size_t i = 0; i < line.size(); ++i) {
        const auto byte = static_cast<unsigned char>(line[i]);
        const bool isLateControl =  // U+0080 to U+009F, which some terminals obey
            byte == 0xC2 && i + 1 < line.size() && static_cast<unsigned char>(line[i + 1]) < 0xA0;
        if (isLateControl)
            line.erase(i + 1, 1);
        if (isLateControl || byte < 0x20 || byte == 0x7F)
            line[i] = '?';
    }
    return cut ? line + "..." : line;
}

std::string inQuotes(std::string_view text) {
    return '"' + oneLine(text) + '"';
}
