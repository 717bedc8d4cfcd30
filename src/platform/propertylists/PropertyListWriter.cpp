#include <QtCore/QByteArray>
#include <QtCore/QDateTime>
#include <QtCore/QTimeZone>
#include <QtCore/QXmlStreamWriter>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "propertylists/PropertyList.h"
#include "propertylists/PropertyListEpoch.h"
#include "text/CNumber.h"

namespace {

/// Thrown inside the writer only.
struct Refused {
    std::string reason;
};

/// The least date is 0001-01-01, the first one too late 10000-01-01.
constexpr double kFirstSecond = -63113904000.;
constexpr double kSecondTooLate = 252423993600.;

bool fitsXml(QChar c) {
    return c.unicode() >= 0x20 ? c.unicode() < 0xFFFE : c == u'\t' || c == u'\n' || c == u'\r';
}

QString textOf(const std::string& utf8) {
    QString text = QString::fromStdString(utf8);
    if (text.toStdString() != utf8 || !std::ranges::all_of(text, fitsXml))
        throw Refused{"text that XML cannot hold: \"" + oneLine(utf8) + '"'};
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
            throw Refused{"nested deeper than " + std::to_string(PropertyList::kMaximumDepth)};
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
            m_xml.writeTextElement(QStringLiteral("integer"), QString::number(*integer));
        else if (const auto* real = value.real())
            writeReal(*real);
        else if (const auto* flag = value.boolean())
            m_xml.writeEmptyElement(*flag ? QStringLiteral("true") : QStringLiteral("false"));
        else if (const auto* date = value.date())
            writeDate(*date);
        else if (const auto* data = value.data())
            writeData(*data);
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

    /// The shortest digits that give the same double again.
    void writeReal(double real) {
        std::array<char, 32> digits;
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), real).ptr;
        m_xml.writeTextElement(QStringLiteral("real"),
                               QString::fromLatin1(digits.data(), end - digits.data()));
    }

    void writeDate(PropertyListDate date) {
        if (!(date.seconds >= kFirstSecond && date.seconds < kSecondTooLate))
            throw Refused{"a date outside the years 1 to 9999"};
        const auto seconds = static_cast<qint64>(std::floor(date.seconds));
        const QDateTime utc =
            QDateTime::fromSecsSinceEpoch(seconds + kSecondsFrom1970To2001, QTimeZone::utc());
        m_xml.writeTextElement(QStringLiteral("date"),
                               utc.toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss'Z'")));
    }

    void writeData(const PropertyListValue::Data& data) {
        const auto bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(data.data()),
                                                   static_cast<qsizetype>(data.size()));
        m_xml.writeTextElement(QStringLiteral("data"), QString::fromLatin1(bytes.toBase64()));
    }

    QXmlStreamWriter m_xml;
};

}  // namespace

std::optional<std::string> PropertyList::toXml(const PropertyListValue& value, std::string& error) {
    QByteArray xml;
    try {
        Writer(&xml).write(value);
    } catch (const Refused& refused) {
        error = refused.reason;
        return std::nullopt;
    }
    if (static_cast<std::size_t>(xml.size()) > kMaximumBytes) {
        error = "a property list of more than 4 MiB";
        return std::nullopt;
    }
    return xml.toStdString();
}
