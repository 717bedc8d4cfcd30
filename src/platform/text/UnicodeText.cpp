#include "text/UnicodeText.h"

#include <locale.h>
#include <wchar.h>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringDecoder>

#include <algorithm>

namespace {

QString decoded(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

bool isControl(QChar c) {
    return c.category() == QChar::Other_Control || c.category() == QChar::Separator_Line ||
           c.category() == QChar::Separator_Paragraph;
}

bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

}  // namespace

bool UnicodeText::isUtf8(std::string_view text) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    [[maybe_unused]] const QString whole =
        decoder(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    return !decoder.hasError();
}

std::string UnicodeText::trimmed(std::string_view text) {
    return decoded(text).trimmed().toStdString();
}

std::string UnicodeText::lowerCased(std::string_view text) {
    return decoded(text).toLower().toStdString();
}

bool UnicodeText::hasControls(std::string_view text) {
    return std::ranges::any_of(decoded(text), isControl);
}

std::string UnicodeText::withoutControls(std::string_view text) {
    QString kept = decoded(text);
    kept.removeIf(isControl);
    return kept.toStdString();
}

std::string_view UnicodeText::cut(std::string_view text, std::size_t bytes) {
    if (text.size() <= bytes)
        return text;
    while (bytes > 0 && continuesCharacter(text[bytes]))
        --bytes;
    return text.substr(0, bytes);
}

std::size_t UnicodeText::columns(std::string_view text) {
    // The library knows the widths in a locale that has Unicode only.
    static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    const locale_t before = unicode ? uselocale(unicode) : locale_t{};
    std::size_t columns = 0;
    for (const auto character : decoded(text).toUcs4()) {
        const int width = unicode ? ::wcwidth(static_cast<wchar_t>(character)) : 1;
        columns += static_cast<std::size_t>(std::max(width, 0));
    }
    if (unicode)
        uselocale(before);
    return columns;
}
