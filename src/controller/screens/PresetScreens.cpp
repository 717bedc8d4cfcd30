#include "screens/PresetScreens.h"

#include "parameters/GrainModes.h"

namespace {

const QString kPresetList = QStringLiteral("presetList");
const QString kGrainMode = QStringLiteral("grainMode");

QString text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

PresetScreens::PresetScreens(const Rooms& rooms, Tell tell)
    : m_rooms(rooms), m_tell(std::move(tell)) {
    connect(&rooms.presetBar, &PresetBar::changed, this, &PresetScreens::showChange);
}

void PresetScreens::toolbarPresetClicked() {
    if (!m_rooms.presentation.canPresent(Presentation::kPresets))
        return;
    Picker picker = presetList();
    if (m_presets)
        picker->setPlace(m_presets->place());
    m_rooms.presentation.present(Presentation::kPresets, picker.get());
    m_presets = std::move(picker);
    showChange();
}

PresetScreens::Picker PresetScreens::presetList() {
    QList<ItemPickerController::Item> list;
    for (const auto& [key, preset] : m_rooms.store.presets())
        list += ItemPickerController::item(QVariant::fromValue(preset), text(preset.name));
    const auto& current = m_rooms.settings.currentPreset();
    auto picker = std::make_unique<ItemPickerController>(
        std::move(list), current ? QVariant::fromValue(*current) : QVariant(), kPresetList, this);
    picker->setTitle(tr("Presets"));
    return picker;
}

void PresetScreens::showChange() {
    if (m_presets)
        m_presets->setChanged(m_rooms.settings.isModified());
}

void PresetScreens::grainModeClicked() {
    if (!m_rooms.presentation.canPresent(Presentation::kGrainModes))
        return;
    Picker picker = grainModeList();
    m_rooms.presentation.present(Presentation::kGrainModes, picker.get());
    m_grainModes = std::move(picker);
}

PresetScreens::Picker PresetScreens::grainModeList() {
    QList<ItemPickerController::Item> list;
    for (const GrainModeItem& mode : kGrainModes)
        list += ItemPickerController::itemWithImage(GrainModeState::tr(mode.name.data()),
                                                    text(mode.image));
    auto picker = std::make_unique<ItemPickerController>(std::move(list), m_rooms.grainMode.name(),
                                                         kGrainMode, this);
    picker->setTitle(tr("Grain Mode"));
    return picker;
}

void PresetScreens::itemPicked(const QVariant& item, int index, const QString& forSource) {
    if (forSource == kPresetList)
        m_rooms.settings.pick(item.value<Preset>());
    else if (forSource == kGrainMode)
        m_rooms.grainMode.pick(index);
    else
        return;
    m_rooms.presentation.finish();
}

void PresetScreens::toolbarSaveClicked() {
    if (!m_rooms.presentation.canPresent(Presentation::kSave))
        return;
    auto save = std::make_unique<PresetSaveController>(*this);
    save->setPreset(m_rooms.settings.makePresetFromSettings());
    m_rooms.presentation.present(Presentation::kSave, save.get());
    m_save = std::move(save);
}

int PresetScreens::hasPresetWithName(const std::string& name) {
    return m_rooms.settings.hasPresetWithName(name);
}

void PresetScreens::savedPreset(PresetSaveController& panel, const Preset& preset,
                                const std::string& as) {
    const std::string fault = m_rooms.settings.savedPreset(preset, as);
    if (fault.empty())
        m_rooms.presentation.finish();
    else
        panel.fail(tr("The preset could not be saved: %1").arg(QString::fromStdString(fault)));
}

void PresetScreens::toolbarDeleteClicked() {
    if (!m_rooms.settings.canDelete() || !m_rooms.presentation.canPresent(Presentation::kDelete))
        return;
    const std::string title = m_rooms.settings.pickerTitle();
    m_rooms.alert.show(
        {.tag = Presentation::kPresets,
         .title = tr("Delete Preset"),
         .message = tr("This will permanently delete the preset, ") + '"' + text(title) + '"',
         .cancel = tr("Cancel"),
         .other = tr("Delete"),
         .destructive = true},
        [this, title](std::uint32_t, int button) {
            if (button == 1)
                deletePreset(title);
        });
}

/// Another preset may have been chosen behind the alert: only the one that was asked about goes.
void PresetScreens::deletePreset(const std::string& title) {
    if (title != m_rooms.settings.pickerTitle())
        return;
    if (const std::string fault = m_rooms.settings.deleteCurrentPreset(); !fault.empty())
        m_tell(fault);
}
