#pragma once

#include <QString>

/// How long a recording can go on. [main]
namespace RemainingTime {

/// Whole seconds of a performance (16 bits, mono) that so many bytes hold.
qint64 seconds(quint64 bytes);
/// "2 h 10 min left", "10 min left", "45 s left".
QString text(qint64 seconds);

}  // namespace RemainingTime
