#include <QtCore/QByteArray>
#include <QtCore/QXmlStreamWriter>
#include <algorithm>

#include "propertylists/PropertyList.h"
#include "propertylists/PropertyListScalars.h"

namespace {

bool fitsXml(QChar c) {
    return c.unicode() >= 0x20 ? c.unicode() < 0xFFFE : c == u'\t' || c == u'\n' || c == u'\r';
}

QString textOf(const std::string& utf8) {
    QString text = QString::fromStdString(utf8);
    if (text.toStdString() != utf8 || !std::ranges::all_of(text, fitsXml))
        throw PropertyListRefusal{"text that XML cannot hold: " + quoted(utf8)};
    return text;
}

class Writer {
  public:
    explicit Writer(QByteArray* xml) : m_xml(xml) { m_xml.setAutoFormatting(true); }

    void write(const PropertyListValue& value) {
        m_xml.writeStartDocument();
        m_xml.writeStartElement(QStringLiteral("plist"));
        m_xml.writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
        writeValue(value, 0);
        m_xml.writeEndDocument();
    }

  private:
    void writeValue(const PropertyListValue& value, int depth) {
        if (depth >= PropertyList::kMaximumDepth && (value.dictionary() || value.array()))
            throw PropertyListRefusal{"nested deeper than " +
                                      std::to_string(PropertyList::kMaximumDepth)};
        if (const auto* dictionary = value.dictionary())
            writeDictionary(*dictionary, depth + 1);
        else if (const auto* array = value.array())
            writeArray(*array, depth + 1);
        else
            writeScalar(value);
    }

    void writeScalar(const PropertyListValue& value) {
        if (const auto* text = value.string())
            writeText(QStringLiteral("string"), *text);
        else if (const auto* integer = value.integer())
            writePlain(QStringLiteral("integer"), std::to_string(*integer));
        else if (const auto* real = value.real())
            writePlain(QStringLiteral("real"), PropertyListScalars::textOf(*real));
        else if (const auto* flag = value.boolean())
            m_xml.writeEmptyElement(*flag ? QStringLiteral("true") : QStringLiteral("false"));
        else if (const auto* date = value.date())
            writePlain(QStringLiteral("date"), PropertyListScalars::textOf(*date));
        else if (const auto* data = value.data())
            writePlain(QStringLiteral("data"), PropertyListScalars::textOf(*data));
    }

    void writeDictionary(const PropertyListValue::Dictionary& dictionary, int depth) {
        m_xml.writeStartElement(QStringLiteral("dict"));
        for (const auto& [key, value] : dictionary) {
            writeText(QStringLiteral("key"), key);
            writeValue(value, depth);
        }
        m_xml.writeEndElement();
    }

    void writeArray(const PropertyListValue::Array& array, int depth) {
        m_xml.writeStartElement(QStringLiteral("array"));
        for (const PropertyListValue& value : array)
            writeValue(value, depth);
        m_xml.writeEndElement();
    }

    /// A carriage return would be read back as a line feed if it stood there as it is.
    void writeText(const QString& element, const std::string& utf8) {
        m_xml.writeStartElement(element);
        const QStringList parts = textOf(utf8).split(u'\r');
        for (qsizetype i = 0; i < parts.size(); ++i) {
            if (i > 0)
                m_xml.writeEntityReference(QStringLiteral("#13"));
            m_xml.writeCharacters(parts[i]);
        }
        m_xml.writeEndElement();
    }

    void writePlain(const QString& element, const std::string& ascii) {
        m_xml.writeTextElement(element, QString::fromStdString(ascii));
    }

    QXmlStreamWriter m_xml;
};

}  // namespace

std::optional<std::string> PropertyList::toXml(const PropertyListValue& value, std::string& error) {
    QByteArray xml;
    try {
        Writer(&xml).write(value);
    } catch (const PropertyListRefusal& refused) {
        error = refused.reason;
        return std::nullopt;
    }
    if (static_cast<std::size_t>(xml.size()) > kMaximumBytes) {
        error = "a property list of more than 4 MiB";
        return std::nullopt;
    }
    return xml.toStdString();
}
