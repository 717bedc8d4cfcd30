#pragma once

#include <QString>

namespace TooltipFormat {

/// `format` with its one floating-point placeholder ("%2.0f%%") replaced; a format with another
/// placeholder, or with none, is given back as it stands.
QString applied(const QString& format, double number);

}  // namespace TooltipFormat
