#include "screens/SettingsController.h"

#include "notifications/NotificationCentre.h"

namespace {

// Keys of the user defaults. The size is 1 less the row; labels are stored as hidden.
constexpr const char* kKeySize = "keyboard-size";
constexpr const char* kLabelsHidden = "keyboard-labels";
constexpr const char* kAutomaticGain = "auto-gain-control";

constexpr int kStandard = 1;
constexpr int kExtraWide = 0;

}  // namespace

SettingsController::SettingsController(UserDefaults& defaults) : m_defaults(defaults) {
    willAppear();
}

QString SettingsController::gainFooter() {
    return tr(
        "Gain Control will help prevent clipping (bad noises!) if the gain is turned up too "
        "loud.");
}

QString SettingsController::version() {
    return tr("Ombrix Synth %1").arg(QStringLiteral(OMBRIX_VERSION));
}

void SettingsController::willAppear() {
    const int row = 1 - storedKeySize(kStandard);
    m_marks = {row == 0, row == 1};
    Q_EMIT changed();
}

/// Anything but 0 is the standard size, as the keyboard has it.
int SettingsController::storedKeySize(int ifAbsent) const {
    return m_defaults.integer(kKeySize).value_or(ifAbsent) == kExtraWide ? kExtraWide : kStandard;
}

bool SettingsController::largeKeys() const {
    return storedKeySize(kStandard) == kExtraWide;
}

bool SettingsController::showLabels() const {
    return !m_defaults.boolean(kLabelsHidden).value_or(false);
}

bool SettingsController::automaticGain() const {
    return m_defaults.boolean(kAutomaticGain).value_or(true);
}

void SettingsController::chooseKeySize(int row) {
    if (row != 0 && row != 1)
        return;
    m_marks[static_cast<std::size_t>(1 - storedKeySize(kExtraWide))] = false;
    m_marks[static_cast<std::size_t>(row)] = true;
    m_defaults.set(kKeySize, std::int64_t{1 - row});
    post();
}

void SettingsController::switchTurned(std::uint32_t tag, bool on) {
    if (tag == kGainSwitch)
        m_defaults.set(kAutomaticGain, on);
    else if (tag == kLabelsSwitch)
        m_defaults.set(kLabelsHidden, !on);
    post();
}

void SettingsController::post() {
    Q_EMIT changed();
    NotificationCentre::defaultCentre().post(kSettingsChangedNotification);
}
