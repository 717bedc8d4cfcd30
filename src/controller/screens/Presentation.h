#pragma once

#include <QObject>
#include <QString>
#include <functional>

#include "audiounits/FourCharCode.h"

/// Name of the notice that a popover is about to appear.
inline constexpr const char* kPopoverNotification = "com.quaddle.popover";

/// What lies over the main screen: one popover or sheet at a time, told apart by its four-character
/// tag. Alerts lie above it and do not count. [main]
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
    static constexpr auto kEdit = fourCC("edit");

    using Cancelled = std::function<void()>;

    /// "pset" and so on; empty when nothing is shown.
    QString tag() const { return m_tag; }
    /// The controller of what is shown; null for none.
    QObject* content() const { return m_content; }

    /// False when what has this tag is shown already; else dismisses whatever is shown.
    bool canPresent(std::uint32_t tag);
    /// Shows a popover in place of what is shown. `content` is not owned; it outlives its being
    /// shown.
    void present(std::uint32_t tag, QObject* content);
    /// The same for a sheet, which hears when it goes without a choice.
    void presentSheet(std::uint32_t tag, QObject* content, Cancelled cancelled);
    /// The player tapped elsewhere or pressed Escape: a sheet is cancelled. False when nothing was
    /// shown.
    Q_INVOKABLE bool dismiss();
    /// What is shown has done its work.
    Q_INVOKABLE void finish();

  Q_SIGNALS:
    void changed();

  private:
    void show(const QString& tag, QObject* content, Cancelled cancelled);

    QString m_tag;
    QObject* m_content = nullptr;
    Cancelled m_cancelled;
};
