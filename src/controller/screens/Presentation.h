#pragma once

#include <QObject>
#include <QString>

#include "audiounits/FourCharCode.h"

/// What lies over the main screen: one popover, sheet or alert at a time, told apart by its
/// four-character tag. [main]
class Presentation : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString tag READ tag NOTIFY changed)
    Q_PROPERTY(QObject* content READ content NOTIFY changed)

  public:
    static constexpr auto kPresets = fourCC("pset");
    static constexpr auto kGrainModes = fourCC("gmod");
    static constexpr auto kSave = fourCC("psav");
    static constexpr auto kDelete = fourCC("pdel");
    static constexpr auto kRecorded = fourCC("recp");
    static constexpr auto kSettings = fourCC("sett");

    /// "pset" and so on; empty when nothing is shown.
    QString tag() const { return m_tag; }
    /// The controller of what is shown; null for none.
    QObject* content() const { return m_content; }

    /// False when what has this tag is shown already; else dismisses whatever is shown.
    bool canPresent(std::uint32_t tag);
    /// Shows it; `content` is not owned and must outlive its being shown.
    void present(std::uint32_t tag, QObject* content);
    /// The player tapped elsewhere, pressed Escape, or was done.
    Q_INVOKABLE void dismiss();

  Q_SIGNALS:
    void changed();

  private:
    QString m_tag;
    QObject* m_content = nullptr;
};
