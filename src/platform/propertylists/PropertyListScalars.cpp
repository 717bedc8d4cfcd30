#include "propertylists/PropertyListScalars.h"

#include <QtCore/QByteArray>
#include <QtCore/QDateTime>
#include <QtCore/QTimeZone>
#include <array>
#include <charconv>
#include <cmath>

#include "text/CNumber.h"

namespace {

constexpr qint64 kSecondsFrom1970To2001 = 978307200;
// In seconds since 2001: 0001-01-01, and 10000-01-01, which has a digit too many.
constexpr double kFirstSecond = -63113904000.;
constexpr double kSecondTooLate = 252423993600.;

}  // namespace

std::string quoted(const std::string& text) {
    return '"' + oneLine(text) + '"';
}

std::int64_t PropertyListScalars::integerFrom(const std::string& text) {
    std::int64_t number = 0;
    const char* first = text.data() + (text.starts_with('+') ? 1 : 0);
    const char* last = text.data() + text.size();
    const auto [end, failure] = std::from_chars(first, last, number);
    if (failure == std::errc::result_out_of_range)
        throw PropertyListRefusal{"the integer " + quoted(text) + " is too large"};
    if (failure != std::errc() || end != last || text.starts_with("+-"))
        throw PropertyListRefusal{quoted(text) + " is not an integer"};
    return number;
}

double PropertyListScalars::realFrom(const std::string& text) {
    const auto number = numberFromText(text);
    if (!number)
        throw PropertyListRefusal{quoted(text) + " is not a number"};
    return *number;
}

PropertyListDate PropertyListScalars::dateFrom(const std::string& text) {
    // Day and time apart: together they would be taken as local time, which has gaps.
    const QString written = QString::fromStdString(text);
    const QDate day = QDate::fromString(written.left(10), QStringLiteral("yyyy-MM-dd"));
    const QTime time = QTime::fromString(written.mid(10), QStringLiteral("'T'HH:mm:ss'Z'"));
    if (!day.isValid() || !time.isValid() || day.year() < 1)
        throw PropertyListRefusal{quoted(text) + " is not a date such as 2001-01-01T00:00:00Z"};
    const QDateTime date(day, time, QTimeZone::utc());
    return {double(date.toSecsSinceEpoch() - kSecondsFrom1970To2001)};
}

PropertyListValue::Data PropertyListScalars::dataFrom(const std::string& text) {
    const QByteArray written = QByteArray::fromStdString(text).simplified().replace(' ', "");
    const auto result =
        QByteArray::fromBase64Encoding(written, QByteArray::AbortOnBase64DecodingErrors);
    if (result.decodingStatus != QByteArray::Base64DecodingStatus::Ok)
        throw PropertyListRefusal{"data that is not Base64"};
    return {result.decoded.begin(), result.decoded.end()};
}

std::string PropertyListScalars::textOf(double real) {
    std::array<char, 32> digits;
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), real).ptr};
}

std::string PropertyListScalars::textOf(PropertyListDate date) {
    if (!(date.seconds >= kFirstSecond && date.seconds < kSecondTooLate))
        throw PropertyListRefusal{"a date outside the years 1 to 9999"};
    const auto seconds = static_cast<qint64>(std::floor(date.seconds));
    return QDateTime::fromSecsSinceEpoch(seconds + kSecondsFrom1970To2001, QTimeZone::utc())
        .toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss'Z'"))
        .toStdString();
}

std::string PropertyListScalars::textOf(const PropertyListValue::Data& data) {
    return QByteArray::fromRawData(reinterpret_cast<const char*>(data.data()),
                                   static_cast<qsizetype>(data.size()))
        .toBase64()
        .toStdString();
}
