#include <QtCore/QByteArray>
#include <QtCore/QXmlStreamReader>

#include "propertylists/PropertyList.h"
#include "propertylists/PropertyListScalars.h"
#include "text/CNumber.h"

namespace {

std::string trimmed(const QString& text) {
    return text.trimmed().toStdString();
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
    [[noreturn]] static void refuse(std::string reason) {
        throw PropertyListRefusal{std::move(reason)};
    }

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
            return PropertyListScalars::integerFrom(trimmed(text()));
        if (type == u"real")
            return PropertyListScalars::realFrom(trimmed(text()));
        if (type == u"true" || type == u"false")
            return readBoolean(type == u"true");
        if (type == u"date")
            return PropertyListScalars::dateFrom(trimmed(text()));
        if (type == u"data")
            return PropertyListScalars::dataFrom(text().toStdString());
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

    PropertyListValue readBoolean(bool value) {
        if (!text().trimmed().isEmpty())
            refuse("text within a boolean");
        return value;
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
    } catch (const PropertyListRefusal& refused) {
        error = "line " + std::to_string(reader.line()) + ": " + refused.reason;
        return std::nullopt;
    }
}
