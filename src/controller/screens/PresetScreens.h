#pragma once

#include <memory>

#include "screens/AlertController.h"
#include "screens/GrainModeState.h"
#include "screens/ItemPickerController.h"
#include "screens/Presentation.h"
#include "screens/PresetBar.h"
#include "screens/PresetSaveController.h"

/// What the toolbar's preset buttons and the grain mode button open: the two lists, the save panel
/// and the question before a preset is deleted. [main]
class PresetScreens : public QObject, public ItemPickerDelegate, public PresetSaveDelegate {
    Q_OBJECT

  public:
    /// None is owned.
    struct Rooms {
        Settings& settings;
        PresetStore& store;
        GrainModeState& grainMode;
        PresetBar& presetBar;
        Presentation& presentation;
        AlertController& alert;
    };
    /// Hears one line for the user at a time.
    using Tell = std::function<void(const std::string& line)>;

    PresetScreens(const Rooms& rooms, Tell tell);

    void toolbarPresetClicked();
    void toolbarSaveClicked();
    /// Only users' presets can be deleted.
    void toolbarDeleteClicked();
    void grainModeClicked();

    /// Of the sources "presetList" and "grainMode"; others are not ours.
    void itemPicked(const QVariant& item, int index, const QString& forSource) override;
    int hasPresetWithName(const std::string& name) override;
    void savedPreset(PresetSaveController& panel, const Preset& preset,
                     const std::string& as) override;

  private:
    using Picker = std::unique_ptr<ItemPickerController>;

    Picker presetList();
    Picker grainModeList();
    void showChange();
    void deletePreset(const std::string& title);

    Rooms m_rooms;
    Tell m_tell;
    // Each stays when it is closed, until it is opened anew: a popover shows it while it fades, and
    // the list of presets keeps its place.
    Picker m_presets;
    Picker m_grainModes;
    std::unique_ptr<PresetSaveController> m_save;
};
