#include "midi/network/PlainName.h"

#include <array>

#include "text/UnicodeText.h"

namespace {

/// Longer ones are cut before they are looked at: characters that go may be among the first.
constexpr std::size_t kReadBytes = 1024;

/// Marks, embeddings, overrides and isolates of direction, and marks that take no room.
constexpr std::array kUnseen = {
    std::string_view("\u061C"), std::string_view("\u200B"), std::string_view("\u200E"),
    std::string_view("\u200F"), std::string_view("\u202A"), std::string_view("\u202B"),
    std::string_view("\u202C"), std::string_view("\u202D"), std::string_view("\u202E"),
    std::string_view("\u2060"), std::string_view("\u2066"), std::string_view("\u2067"),
    std::string_view("\u2068"), std::string_view("\u2069"), std::string_view("\uFEFF"),
};

std::string withoutUnseen(std::string text) {
    for (const std::string_view mark : kUnseen) {
        for (auto at = text.find(mark); at != text.npos; at = text.find(mark, at))
            text.erase(at, mark.size());
    }
    return text;
}

}  // namespace

std::string plainName(std::string_view name) {
    const std::string readable = UnicodeText::withoutControls(UnicodeText::cut(name, kReadBytes));
    const std::string seen = UnicodeText::trimmed(withoutUnseen(readable));
    const std::string_view plain = UnicodeText::cut(seen, kLongestPeerName);
    return plain.empty() ? "Unknown name" : std::string(plain);
}
