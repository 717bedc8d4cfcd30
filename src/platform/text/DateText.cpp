#include "text/DateText.h"

#include <QDateTime>
#include <QLocale>
#include <cmath>

namespace {

constexpr double kReferenceDate = 978307200.0;  // 2001-01-01 UTC, seconds since 1970

/// The account's locale; where none is set, the one whose order the program's own texts have.
QLocale accountLocale() {
    const QLocale system = QLocale::system();
    return system.language() == QLocale::C ? QLocale(QLocale::English, QLocale::UnitedStates)
                                           : system;
}

/// Qt knows a short and a long date; the medium one has the order of the short one.
QString mediumDate(const QLocale& locale) {
    const QString shortOne = locale.dateFormat(QLocale::ShortFormat);
    const auto day = shortOne.indexOf('d');
    const auto month = shortOne.indexOf('M');
    const auto year = shortOne.indexOf('y');
    if (year < day)
        return QStringLiteral("yyyy MMM d");
    return month < day ? QStringLiteral("MMM d, yyyy") : QStringLiteral("d MMM yyyy");
}

}  // namespace

std::string DateText::mediumDateShortTime(double moment) {
    const QLocale locale = accountLocale();
    const auto milliseconds = static_cast<qint64>(std::floor((moment + kReferenceDate) * 1000));
    const QDateTime when = QDateTime::fromMSecsSinceEpoch(milliseconds);
    const QString time = locale.timeFormat(QLocale::ShortFormat);
    const QString text = locale.toString(when, mediumDate(locale) + QStringLiteral(", ") + time);
    return text.simplified().toStdString();
}
