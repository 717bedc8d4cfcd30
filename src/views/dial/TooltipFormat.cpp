#include "dial/TooltipFormat.h"

#include <QRegularExpression>

#include "text/CNumber.h"

QString TooltipFormat::applied(const QString& format, double number) {
    static const QRegularExpression onePlaceholder(
        R"(\A(?:[^%]|%%)*%[-+ #0]*\d{0,2}(?:\.\d{0,2})?[aAeEfFgG](?:[^%]|%%)*\z)");
    if (!onePlaceholder.match(format).hasMatch())
        return format;
    return QString::fromStdString(formattedNumber(format.toUtf8().constData(), number));
}
