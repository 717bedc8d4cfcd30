#include <QtCore/QStringDecoder>
#include <QtCore/QXmlStreamReader>
#include <algorithm>

#include "propertylists/PropertyList.h"
#include "propertylists/PropertyListScalars.h"
#include "propertylists/XmlGuard.h"
#include "text/CNumber.h"

namespace {

std::string trimmed(const QString& text) {
    return text.trimmed().toStdString();
}

/// Decoded here and not by the XML reader, which would believe any encoding that a file names and
/// so see other tags than the guard has seen.
std::optional<QString> fromUtf8(std::string_view text) {
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString decoded = decoder(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    return decoder.hasError() ? std::nullopt : std::optional(decoded);
}

class Reader {
  public:
    Reader(const QString& xml, bool strict) : m_xml(xml), m_strict(strict) {}

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
    [[noreturn]] static void refuse(std::string reason) {
        throw PropertyListRefusal{std::move(reason)};
    }

    void refuseBrokenXml() const {
        if (!m_xml.hasError())
            return;
        QString why = m_xml.errorString();
        if (why.endsWith(u'.'))
            why.chop(1);  // messages go on
        refuse("broken XML: " + oneLine(why.toStdString()));
    }

    void step() {
        m_xml.readNext();
        refuseBrokenXml();
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
        refuseBrokenXml();
        return text;
    }

    PropertyListValue readValue(int depth) {
        const QString type = m_xml.name().toString();
        if (type == u"dict" || type == u"array") {
            if (depth >= PropertyList::kMaximumDepth)
                refuse("nested deeper than " + std::to_string(PropertyList::kMaximumDepth));
            return type == u"dict" ? readDictionary(depth + 1) : readArray(depth + 1);
        }
        const QString content = text();
        try {
            return scalar(type, content);
        } catch (const PropertyListRefusal&) {
            if (m_strict)
                throw;
        }
        if (const auto number = numberFromText(trimmed(content)); number && type == u"integer")
            return *number;
        return content.toStdString();
    }

    static PropertyListValue scalar(const QString& type, const QString& content) {
        if (type == u"string")
            return content.toStdString();
        if (type == u"integer")
            return PropertyListScalars::integerFrom(trimmed(content));
        if (type == u"real")
            return PropertyListScalars::realFrom(trimmed(content));
        if (type == u"true" || type == u"false")
            return booleanFrom(type == u"true", content);
        if (type == u"date")
            return PropertyListScalars::dateFrom(trimmed(content));
        if (type == u"data")
            return PropertyListScalars::dataFrom(content.toStdString());
        refuse("unknown value <" + oneLine(type.toStdString()) + ">");
    }

    PropertyListValue readDictionary(int depth) {
        PropertyListValue::Dictionary dictionary;
        std::map<std::string, int> twice;
        while (nextElement()) {
            if (m_xml.name() != u"key")
                refuse("a value without a <key> before it");
            std::string key = text().toStdString();
            if (!nextElement() || m_xml.name() == u"key")
                refuse("the key " + quoted(key) + " has no value");
            PropertyListValue value = readValue(depth);
            const bool known = dictionary.contains(key);
            if (known && m_strict)
                refuse("the key " + quoted(key) + " stands there twice");
            dictionary.insert_or_assign(known ? numbered(dictionary, key, twice[key]) : key,
                                        std::move(value));
        }
        return dictionary;
    }

    static std::string numbered(const PropertyListValue::Dictionary& dictionary,
                                const std::string& key, int& number) {
        std::string next;
        do
            next = key + ' ' + std::to_string(++number + 1);
        while (dictionary.contains(next));
        return next;
    }

    PropertyListValue readArray(int depth) {
        PropertyListValue::Array array;
        while (nextElement())
            array.push_back(readValue(depth));
        return array;
    }

    static PropertyListValue booleanFrom(bool value, const QString& content) {
        if (!content.trimmed().isEmpty())
            refuse("text within a boolean");
        return value;
    }

    QXmlStreamReader m_xml;
    bool m_strict;
};

}  // namespace

std::optional<PropertyListValue> PropertyList::parse(std::span<const std::uint8_t> xml,
                                                     std::string& error, Malformed malformed) {
    const std::string_view text(reinterpret_cast<const char*>(xml.data()), xml.size());
    const auto refuse = [&](std::int64_t line, const std::string& reason) {
        error = "line " + std::to_string(line) + ": " + reason;
        return std::nullopt;
    };
    if (text.size() > kMaximumBytes)
        return refuse(1, "a property list of more than 4 MiB");
    if (text.starts_with("bplist"))
        return refuse(1, "a binary property list; only XML ones are read");
    std::size_t guarded = 0;
    try {
        guardXml(text, guarded);
    } catch (const PropertyListRefusal& refused) {
        return refuse(1 + std::count(text.begin(), text.begin() + std::ptrdiff_t(guarded), '\n'),
                      refused.reason);
    }
    const auto decoded = fromUtf8(text);
    if (!decoded)
        return refuse(1, "not UTF-8");
    Reader reader(*decoded, malformed == Malformed::refused);
    try {
        return reader.read();
    } catch (const PropertyListRefusal& refused) {
        return refuse(reader.line(), refused.reason);
    }
}
