#include "screens/PresetSaveController.h"

#include "parameters/PresetNames.h"

namespace {

QString quoted(const std::string& name) {
    return '"' + QString::fromStdString(name) + '"';
}

}  // namespace

void PresetSaveController::setPreset(const Preset& preset) {
    m_preset = preset;
    textChanged(QString::fromStdString(preset.name));
}

void PresetSaveController::textChanged(const QString& text) {
    m_presetName = text;
    m_failed = false;
    const std::string name = PresetNames::trimmed(text.toStdString());
    const int there = m_delegate.hasPresetWithName(name);
    if (name.empty() || there < 0)
        return explain(false, tr("Please supply a name for your preset"));
    if (const std::string fault = PresetNames::fault(name); !fault.empty())
        return explain(
            false,
            tr("This name is %1; please choose another one.").arg(QString::fromStdString(fault)));
    const QString beginning = there > 0 ? tr("Your settings will overwrite the preset ")
                                        : tr("Your settings will be saved to a new preset, ");
    explain(true, beginning + quoted(name));
}

void PresetSaveController::performSave() {
    if (m_canSave)
        m_delegate.savedPreset(*this, m_preset, m_presetName.toStdString());
}

void PresetSaveController::fail(const QString& reason) {
    m_failed = true;
    explain(true, reason);
}

void PresetSaveController::explain(bool canSave, const QString& explanation) {
    m_canSave = canSave;
    m_explanation = explanation;
    Q_EMIT changed();
}
