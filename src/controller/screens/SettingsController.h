#pragma once

#include <QObject>

#include "defaults/UserDefaults.h"

/// Name of the notice that the program's own settings have changed.
inline constexpr const char* kSettingsChangedNotification = "com.quaddle.ombrix.settings-changed";

/// The settings screen: size and labels of the keys, automatic gain control. Every change is kept
/// in the user defaults at once, and posted. [main]
class SettingsController : public QObject {
    Q_OBJECT
    Q_PROPERTY(int keySizeRow READ keySizeRow NOTIFY changed)
    Q_PROPERTY(bool largeKeys READ largeKeys NOTIFY changed)
    Q_PROPERTY(bool showLabels READ showLabels WRITE setShowLabels NOTIFY changed)
    Q_PROPERTY(bool automaticGain READ automaticGain WRITE setAutomaticGain NOTIFY changed)

  public:
    explicit SettingsController(UserDefaults& defaults) : m_defaults(defaults) {}

    /// The row that has the check mark: 0 standard keys, 1 extra wide ones.
    int keySizeRow() const;
    /// As the keyboard reads it.
    bool largeKeys() const;
    bool showLabels() const;
    bool automaticGain() const;

    Q_INVOKABLE void chooseKeySize(int row);
    void setShowLabels(bool on);
    void setAutomaticGain(bool on);

  Q_SIGNALS:
    void changed();

  private:
    UserDefaults& m_defaults;
};
