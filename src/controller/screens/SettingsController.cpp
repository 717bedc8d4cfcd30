#include "screens/SettingsController.h"

int SettingsController::keySizeRow() const {
    return 0;
}
bool SettingsController::largeKeys() const {
    return false;
}
bool SettingsController::showLabels() const {
    return true;
}
bool SettingsController::automaticGain() const {
    return m_defaults.boolean("auto-gain-control").value_or(true);
}
void SettingsController::chooseKeySize(int) {}
void SettingsController::setShowLabels(bool) {}
void SettingsController::setAutomaticGain(bool) {}
