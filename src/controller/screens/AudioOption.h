#pragma once

#include <QObject>
#include <QString>

/// One row of a list that one is chosen of. A plain value.
struct AudioOption {
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString detail MEMBER detail)
    Q_PROPERTY(bool chosen MEMBER chosen)

  public:
    QString name;    // what is given back
    QString title;   // what is shown
    QString detail;  // smaller, beside it; may be empty
    bool chosen = false;

    bool operator==(const AudioOption&) const = default;
};
