#include "screens/PresetSaveController.h"

void PresetSaveController::setPreset(const Preset& preset) {
    m_preset = preset;
    textChanged(QString::fromStdString(preset.name));
}

void PresetSaveController::textChanged(const QString& text) {
    m_presetName = text;
    m_canSave = !text.trimmed().isEmpty();
    Q_EMIT changed();
}

void PresetSaveController::performSave() {
    if (m_canSave)
        m_delegate.presetController(m_preset, m_presetName.toStdString());
}
