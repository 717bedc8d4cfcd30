#include <QtCore/QByteArray>
#include <QtCore/QDateTime>
#include <QtCore/QTimeZone>
#include <QtCore/QXmlStreamReader>
#include <charconv>
#include <cmath>

#include "propertylists/PropertyList.h"
#include "propertylists/PropertyListEpoch.h"
#include "text/CNumber.h"

namespace {

/// Thrown inside the reader only.
struct Refused {
    std::string reason;
};

std::string trimmed(const QString& text) {
    return text.trimmed().toStdString();
}

std::string quoted(const std::string& text) {
    return '"' + oneLine(text) + '"';
}

class Reader {
  public:
    explicit Reader(const QByteArray& xml) : m_xml(xml) {}

    PropertyListValue read() {
        if (!nextElement() || m_xml.name() != u"plist")
            refuse("no property list (no <plist>)");
        if (!nextElement())
            refuse("an empty property list");
        PropertyListValue value = readValue(0);
        if (nextElement())
            refuse("more than one value in the property list");
        while (!m_xml.atEnd())
            step();
        return value;
    }

    qint64 line() const { return m_xml.lineNumber(); }

  private:
    [[noreturn]] static void refuse(std::string reason) { throw Refused{std::move(reason)}; }

    void step() {
        m_xml.readNext();
        if (m_xml.hasError())
            refuse("broken XML: " + oneLine(m_xml.errorString().toStdString()));
        if (m_xml.isDTD() && !m_xml.entityDeclarations().isEmpty())
            refuse("entity declarations are not allowed");
    }

    /// To the start of the next element at this level; false at the end of the level.
    bool nextElement() {
        for (;;) {
            step();
            if (m_xml.isStartElement())
                return true;
            if (m_xml.isEndElement() || m_xml.isEndDocument())
                return false;
            if (m_xml.isCharacters() && !m_xml.isWhitespace())
                refuse("text outside of a value: " + quoted(trimmed(m_xml.text().toString())));
        }
    }

    QString text() {
        const QString text = m_xml.readElementText();
        if (m_xml.hasError())
            refuse("broken XML: " + oneLine(m_xml.errorString().toStdString()));
        return text;
    }

    PropertyListValue readValue(int depth) {
        const QString type = m_xml.name().toString();
        if (type == u"dict" || type == u"array") {
            if (depth >= PropertyList::kMaximumDepth)
                refuse("nested deeper than " + std::to_string(PropertyList::kMaximumDepth));
            return type == u"dict" ? readDictionary(depth + 1) : readArray(depth + 1);
        }
        return readScalar(type);
    }

    PropertyListValue readScalar(const QString& type) {
        if (type == u"string")
            return text().toStdString();
        if (type == u"integer")
            return readInteger(trimmed(text()));
        if (type == u"real")
            return readReal(trimmed(text()));
        if (type == u"true" || type == u"false")
            return readBoolean(type == u"true");
        if (type == u"date")
            return readDate(text().trimmed());
        if (type == u"data")
            return readData(text());
        refuse("unknown value <" + oneLine(type.toStdString()) + ">");
    }

    PropertyListValue readDictionary(int depth) {
        PropertyListValue::Dictionary dictionary;
        while (nextElement()) {
            if (m_xml.name() != u"key")
                refuse("a value without a <key> before it");
            std::string key = text().toStdString();
            if (!nextElement() || m_xml.name() == u"key")
                refuse("the key " + quoted(key) + " has no value");
            if (!dictionary.try_emplace(key, readValue(depth)).second)
                refuse("the key " + quoted(key) + " stands there twice");
        }
        return dictionary;
    }

    PropertyListValue readArray(int depth) {
        PropertyListValue::Array array;
        while (nextElement())
            array.push_back(readValue(depth));
        return array;
    }

    static PropertyListValue readInteger(const std::string& text) {
        std::int64_t number = 0;
        const char* first = text.data() + (text.starts_with('+') ? 1 : 0);
        const char* last = text.data() + text.size();
        const auto [end, failure] = std::from_chars(first, last, number);
        if (failure == std::errc::result_out_of_range)
            refuse("the integer " + quoted(text) + " is too large");
        if (failure != std::errc() || end != last || text.starts_with("+-"))
            refuse(quoted(text) + " is not an integer");
        return number;
    }

    static PropertyListValue readReal(const std::string& text) {
        const auto number = numberFromText(text);
        if (!number)
            refuse(quoted(text) + " is not a number");
        return *number;
    }

    PropertyListValue readBoolean(bool value) {
        if (!text().trimmed().isEmpty())
            refuse("text within a boolean");
        return value;
    }

    static PropertyListValue readDate(const QString& text) {
        QDateTime date = QDateTime::fromString(text, QStringLiteral("yyyy-MM-dd'T'HH:mm:ss'Z'"));
        if (!date.isValid())
            refuse(quoted(text.toStdString()) + " is not a date such as 2001-01-01T00:00:00Z");
        date.setTimeZone(QTimeZone::utc());
        return PropertyListDate{double(date.toSecsSinceEpoch() - kSecondsFrom1970To2001)};
    }

    static PropertyListValue readData(const QString& text) {
        const QByteArray written = text.simplified().remove(u' ').toLatin1();
        const auto decoded =
            QByteArray::fromBase64Encoding(written, QByteArray::AbortOnBase64DecodingErrors);
        if (decoded.decodingStatus != QByteArray::Base64DecodingStatus::Ok)
            refuse("data that is not Base64");
        return PropertyListValue::Data(decoded.decoded.begin(), decoded.decoded.end());
    }

    QXmlStreamReader m_xml;
};

}  // namespace

std::optional<PropertyListValue> PropertyList::parse(std::span<const std::uint8_t> xml,
                                                     std::string& error) {
    const auto bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(xml.data()),
                                               static_cast<qsizetype>(xml.size()));
    if (xml.size() > kMaximumBytes) {
        error = "line 1: a property list of more than 4 MiB";
        return std::nullopt;
    }
    if (bytes.startsWith("bplist")) {
        error = "line 1: a binary property list; only XML ones are read";
        return std::nullopt;
    }
    Reader reader(bytes);
    try {
        return reader.read();
    } catch (const Refused& refused) {
        error = "line " + std::to_string(reader.line()) + ": " + refused.reason;
        return std::nullopt;
    }
}
