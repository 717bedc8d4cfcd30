#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <array>
#include <cstdint>

#include "audiounits/FourCharCode.h"
#include "defaults/UserDefaults.h"

/// Name of the notice that the program's own settings have changed.
inline constexpr const char* kSettingsChangedNotification = "com.quaddle.ombrix.settings-changed";

/// The settings screen: size and labels of the keys, automatic gain control. Every change is kept
/// in the user defaults at once, and posted. [main]
class SettingsController : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString keyboardHeading READ keyboardHeading CONSTANT)
    Q_PROPERTY(QStringList keySizes READ keySizes CONSTANT)
    Q_PROPERTY(QString labelsText READ labelsText CONSTANT)
    Q_PROPERTY(QString audioHeading READ audioHeading CONSTANT)
    Q_PROPERTY(QString gainText READ gainText CONSTANT)
    Q_PROPERTY(QString gainFooter READ gainFooter CONSTANT)
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QList<bool> keySizeMarks READ keySizeMarks NOTIFY changed)
    Q_PROPERTY(bool largeKeys READ largeKeys NOTIFY changed)
    Q_PROPERTY(bool showLabels READ showLabels WRITE setShowLabels NOTIFY changed)
    Q_PROPERTY(bool automaticGain READ automaticGain WRITE setAutomaticGain NOTIFY changed)

  public:
    static constexpr auto kLabelsSwitch = fourCC("labl");
    static constexpr auto kGainSwitch = fourCC("gain");

    explicit SettingsController(UserDefaults& defaults);

    /// The screen is about to be shown: the check mark is where the defaults have it.
    Q_INVOKABLE void willAppear();

    // Section 0, then 1, then 2, as the screen words them.
    static QString title() { return tr("Settings"); }
    static QString keyboardHeading() { return tr("Piano Keyboard"); }
    static QStringList keySizes() { return {tr("Standard Key Size"), tr("Extra Wide Key Size")}; }
    static QString labelsText() { return tr("Show Note Labels on Keys"); }
    static QString audioHeading() { return tr("Audio"); }
    static QString gainText() { return tr("Auto Gain Control"); }
    static QString gainFooter();
    static QString version();

    /// Which rows of section 0 have a check mark. Both may, until the screen is shown again: the
    /// first choice takes the mark from row 1, whichever row had it.
    QList<bool> keySizeMarks() const { return {m_marks[0], m_marks[1]}; }
    /// As the keyboard reads it.
    bool largeKeys() const;
    bool showLabels() const;
    bool automaticGain() const;

    /// Row 0 is standard keys, 1 extra wide ones; others are ignored.
    Q_INVOKABLE void chooseKeySize(int row);
    /// The switch of that tag was turned; others than the two above only post.
    void switchTurned(std::uint32_t tag, bool on);
    void setShowLabels(bool on) { switchTurned(kLabelsSwitch, on); }
    void setAutomaticGain(bool on) { switchTurned(kGainSwitch, on); }

  Q_SIGNALS:
    void changed();
    /// The player wants to be shown around again.
    void tutorialWanted();

  private:
    int storedKeySize(int ifAbsent) const;
    void post();

    UserDefaults& m_defaults;
    std::array<bool, 2> m_marks{};  // by row
};
