#pragma once

#include <optional>
#include <string>

#include "defaults/UserDefaults.h"
#include "parameters/PresetStore.h"
#include "recording/UnsavedTake.h"
#include "startup/Instrument.h"
#include "wavechoice/WaveLoading.h"

/// What a screen hears of the settings in use.
class SettingsDelegate {
  public:
    virtual ~SettingsDelegate() = default;
    virtual void pickerTitleChanged(const std::string& /*title*/) {}
    /// Whether the settings differ from the preset that was chosen.
    virtual void modificationNoticeChanged(bool /*visible*/) {}
    virtual void deleteButtonChanged(bool /*enabled*/) {}
    /// All controls are to be set from the instrument.
    virtual void settingsUpdated() {}
    /// One line for the user.
    virtual void told(const std::string& /*line*/) {}
};

/// The settings in use: which preset was chosen, whether they differ from it since, and how they
/// are kept from one run to the next, in the user defaults. [main]
class Settings {
  public:
    /// None is owned. `unsaved` keeps a sound that has no file from one run to the next; sounds
    /// are chosen through `sounds`, and arrive later.
    Settings(Instrument& instrument, WaveLoading& sounds, PresetStore& store,
             UserDefaults& defaults, UnsavedTake& unsaved, SettingsDelegate& delegate);

    /// The preset last applied, if any.
    const std::optional<Preset>& currentPreset() const { return m_currentPreset; }
    const std::string& pickerTitle() const { return m_pickerTitle; }
    bool isModified() const { return m_modified; }
    /// True for users' presets only.
    bool canDelete() const { return m_canDelete; }

    /// After any change of a dial, the envelope or the sound.
    void modify() { setModified(true); }
    void unmodify() { setModified(false); }

    /// The player turned a dial, the sync switch, or chose a mode. Stays when a preset's sound
    /// arrives afterwards. None counts as a change by itself.
    void setParameter(ParameterId id, float stored);
    void setSyncSpeed(bool on);
    void setGrainMode(int mode);
    /// The player chose a sound file from anywhere; counts as a change when it is in use.
    void openSound(const std::string& path);

    /// As it sounds now: a preset whose sound is still on its way has no part in it but its effects
    /// and its envelope.
    Preset makePresetFromSettings() const;
    /// Effects and envelope at once; the voices' numbers with the preset's sound, at once where it
    /// names none.
    void updateSettingsFromPreset(const Preset& preset);
    int hasPresetWithName(const std::string& name) const { return m_store.hasPresetWithName(name); }

    /// The user chose a preset of the store.
    void pick(const Preset& preset);
    /// The last of the store in its order; the default sound when the store is empty.
    void pickSafePreset();
    /// Stores a preset under a name; a sound that has no file is stored with it. Answers one line
    /// when it failed, else nothing.
    [[nodiscard]] std::string savedPreset(const Preset& preset, const std::string& name);
    /// Removes the preset of the picker's title from the store and picks another one. Answers one
    /// line when it failed, else nothing.
    [[nodiscard]] std::string deleteCurrentPreset();

    /// Once at start-up: what `keepForNextRun` has kept.
    void restoreLastPreset();
    void keepForNextRun();
    /// The answer to the alert after a crash: "Default Sound".
    void resetAfterCrash();

    /// The user changed the program's own settings: automatic gain control.
    void internalSettingsChanged();
    /// Also for the instrument's start. On unless the user has switched it off.
    static bool automaticGain(const UserDefaults& defaults);

  private:
    void setPickerTitle(const std::string& title);
    void setModified(bool modified);
    void setCanDelete(bool canDelete);
    void tell(const std::string& line);
    void awaitSoundOf(const Preset& preset);
    void soundSettled(bool arrived);
    void takeArriving();
    Preset settingsToCome() const;
    void restoreUnedited();
    void restoreEdited(const PropertyListValue::Dictionary& edited);
    void restoreUnsavedWave();
    std::string storeWaveOf(Preset& preset);
    void named(const std::string& wave);

    Instrument& m_instrument;
    WaveLoading& m_sounds;
    PresetStore& m_store;
    UserDefaults& m_defaults;
    UnsavedTake& m_unsaved;
    SettingsDelegate& m_delegate;
    std::optional<Preset> m_currentPreset;
    std::string m_pickerTitle;
    bool m_modified = false;
    bool m_canDelete = false;
    bool m_restored = false;
    std::optional<Preset> m_arriving;  // its sound is on its way; with what was changed meanwhile
    bool m_savedMeanwhile = false;
};
