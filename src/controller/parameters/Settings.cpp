#include "parameters/Settings.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "parameters/PresetNames.h"
#include "parameters/PresetRepair.h"

namespace fs = std::filesystem;

namespace {

// Keys of the user defaults.
constexpr const char* kCurrentPreset = "current-preset";
constexpr const char* kCurrentSettings = "current-settings";
constexpr const char* kAutomaticGain = "auto-gain-control";

constexpr const char* kDefaultSoundKey = "default sound";

/// The file that was written last; empty for none.
std::string newest(const std::vector<std::string>& files) {
    const auto written = [](const std::string& file) {
        std::error_code unknown;
        const auto time = fs::last_write_time(file, unknown);
        return unknown ? fs::file_time_type::min() : time;
    };
    const auto found = std::ranges::max_element(files, {}, written);
    return found == files.end() ? "" : *found;
}

}  // namespace

Settings::Settings(Instrument& instrument, WaveLoading& sounds, PresetStore& store,
                   UserDefaults& defaults, UnsavedTake& unsaved, SettingsDelegate& delegate)
    : m_instrument(instrument),
      m_sounds(sounds),
      m_store(store),
      m_defaults(defaults),
      m_unsaved(unsaved),
      m_delegate(delegate) {}

void Settings::setPickerTitle(const std::string& title) {
    m_pickerTitle = title;
    m_delegate.pickerTitleChanged(title);
}

void Settings::setModified(bool modified) {
    m_modified = modified;
    m_delegate.modificationNoticeChanged(modified);
}

void Settings::setCanDelete(bool canDelete) {
    m_canDelete = canDelete;
    m_delegate.deleteButtonChanged(canDelete);
}

void Settings::tell(const std::string& line) {
    if (!line.empty())
        m_delegate.told(line);
}

void Settings::setParameter(ParameterId id, float stored) {
    m_instrument.setParameter(id, stored);
    if (m_arriving)
        m_arriving->setNumber(id, stored);
}

void Settings::setSyncSpeed(bool on) {
    m_instrument.setSyncSpeed(on);
    if (m_arriving)
        m_arriving->syncSpeed = on;
}

void Settings::setGrainMode(int mode) {
    m_instrument.setGrainMode(mode);
    if (m_arriving)
        m_arriving->grainMotion = mode;
}

void Settings::openSound(const std::string& path) {
    takeArriving();
    m_sounds.takeIn(path, [this](bool arrived) {
        if (arrived)
            modify();
    });
}

Preset Settings::makePresetFromSettings() const {
    Preset preset = m_instrument.makePresetFromSettings();
    preset.name = m_pickerTitle;
    return preset;
}

void Settings::updateSettingsFromPreset(const Preset& preset) {
    m_arriving.reset();
    m_instrument.setEffectsFromPreset(preset);
    if (!preset.wave)
        m_instrument.setVoicesFromPreset(preset);
    m_delegate.settingsUpdated();
    setCanDelete(hasPresetWithName(preset.name) > 0);
    unmodify();
    if (preset.wave)
        awaitSoundOf(preset);
}

void Settings::awaitSoundOf(const Preset& preset) {
    const auto path = WaveChoice::findWavePath(*preset.wave);
    if (!path)
        tell(subjectOf(preset.name) + "its sound \"" + *preset.wave +
             "\" is not there; the default sound is used");
    m_arriving = preset;
    m_savedMeanwhile = false;
    m_sounds.setWaveTo(path.value_or(""), [this](bool arrived) { soundSettled(arrived); });
}

/// Without its sound the settings are not the preset's, and neither are they those that were saved
/// while the sound was on its way.
void Settings::soundSettled(bool arrived) {
    if (!m_arriving)
        return;
    takeArriving();
    if (!arrived || m_savedMeanwhile)
        modify();
}

void Settings::takeArriving() {
    if (const auto preset = std::exchange(m_arriving, std::nullopt)) {
        m_instrument.setVoicesFromPreset(*preset);
        m_delegate.settingsUpdated();
    }
}

void Settings::pick(const Preset& preset) {
    m_currentPreset = preset;
    setPickerTitle(m_currentPreset->name);
    updateSettingsFromPreset(*m_currentPreset);
}

void Settings::pickSafePreset() {
    if (m_store.presets().empty()) {
        takeArriving();
        return m_sounds.setWaveTo(WaveChoice::defaultSoundFile(), nullptr);
    }
    m_currentPreset = m_store.presets().rbegin()->second;
    updateSettingsFromPreset(*m_currentPreset);
    setPickerTitle(m_currentPreset->name);
}

std::string Settings::savedPreset(const Preset& preset, const std::string& name) {
    Preset saved = preset;
    saved.name = PresetNames::trimmed(name);
    if (const std::string fault = PresetNames::fault(name); !fault.empty())
        return subjectOf(saved.name) + "its name is " + fault;
    std::string error = saved.wave ? "" : storeWaveOf(saved);
    if (error.empty())
        error = m_store.save(saved);
    const bool newWave = !preset.wave && saved.wave;
    if (!error.empty()) {
        if (newWave)
            ::unlink(WaveChoice::dataFile(*saved.wave).c_str());
        return error;
    }
    if (newWave)
        named(*saved.wave);
    setPickerTitle(saved.name);
    setCanDelete(true);
    unmodify();
    m_currentPreset = std::move(saved);
    m_savedMeanwhile = true;
    return "";
}

/// Presets never refer to a sound that has no file.
std::string Settings::storeWaveOf(Preset& preset) {
    WaveChoice& waves = m_instrument.waves();
    waves.settle();
    if (!waves.currentWave())
        return "";
    const std::string wave =
        WaveChoice::findAvailableWaveName(PresetNames::fileNameFor(preset.name)) + ".wav";
    const std::string error =
        WaveChoice::storeWave(*waves.currentWave(), WaveChoice::dataFile(wave));
    if (error.empty())
        preset.wave = wave;
    return error;
}

/// The file of an earlier take is not that of a sound which has one of its own.
void Settings::named(const std::string& wave) {
    WaveChoice& waves = m_instrument.waves();
    if (!waves.currentWaveFilename())
        m_unsaved.forget();
    waves.setCurrentWaveFilename(wave);
}

std::string Settings::deleteCurrentPreset() {
    const std::string error = m_store.remove(m_pickerTitle);
    if (!error.empty())
        return error;
    pickSafePreset();
    unmodify();
    return "";
}

void Settings::restoreLastPreset() {
    m_restored = true;
    const auto title = m_defaults.string(kCurrentPreset);
    const Preset* last = title ? m_store.find(*title) : nullptr;
    m_currentPreset = last ? std::optional(*last) : std::nullopt;
    if (last)
        setPickerTitle(last->name);
    if (const auto edited = m_defaults.dictionary(kCurrentSettings))
        restoreEdited(*edited);
    else
        restoreUnedited();
    // An instrument that has just been started has no sound that a preset could keep.
    if (!m_instrument.waves().currentWave() && !m_sounds.loading())
        m_sounds.setWaveTo(WaveChoice::defaultSoundFile(), nullptr);
}

void Settings::restoreUnedited() {
    if (m_currentPreset)
        updateSettingsFromPreset(*m_currentPreset);
    else
        pickSafePreset();
    unmodify();
}

void Settings::restoreEdited(const PropertyListValue::Dictionary& edited) {
    std::vector<std::string> repairs;
    const Preset preset = repairedPreset(edited, m_pickerTitle, repairs);
    std::ranges::for_each(repairs, [this](const std::string& repair) { tell(repair); });
    if (!m_currentPreset)
        setPickerTitle(preset.name);
    updateSettingsFromPreset(preset);
    if (!preset.wave)
        restoreUnsavedWave();
    modify();
}

/// The file stays until the sound has a name, so that a crash does not cost it.
void Settings::restoreUnsavedWave() {
    const std::string file = newest(m_unsaved.leftOver());
    if (file.empty())
        return;
    std::string error;
    if (!m_unsaved.adopt(file, error))
        return tell(error);
    m_sounds.setWaveTo(m_unsaved.path(), [this](bool arrived) {
        if (arrived)
            m_instrument.waves().setCurrentWaveFilename(std::nullopt);
    });
}

/// What the settings are once the sound on its way has arrived.
Preset Settings::settingsToCome() const {
    Preset preset = makePresetFromSettings();
    if (!m_arriving)
        return preset;
    preset.wave = m_arriving->wave;
    preset.syncSpeed = m_arriving->syncSpeed;
    preset.grainMotion = m_arriving->grainMotion;
    for (const Parameter& row : kParameters) {
        if (row.kind == ParameterKind::number && isOfVoices(row.id))
            preset.setNumber(row.id, m_arriving->number(row.id));
    }
    return preset;
}

/// Before anything was restored there is nothing new to keep.
void Settings::keepForNextRun() {
    if (!m_restored)
        return;
    m_defaults.set(kCurrentPreset, m_pickerTitle);
    if (!m_modified)
        return m_defaults.remove(kCurrentSettings);
    WaveChoice& waves = m_instrument.waves();
    waves.settle();
    if (!waves.currentWaveFilename() && waves.currentWave())
        tell(m_unsaved.store(*waves.currentWave()));
    m_defaults.set(kCurrentSettings, settingsToCome().toPropertyList());
}

void Settings::resetAfterCrash() {
    const Preset* preset = m_store.find(kDefaultSoundKey);
    if (!preset)
        return pickSafePreset();
    pick(*preset);
}

bool Settings::automaticGain(const UserDefaults& defaults) {
    return defaults.boolean(kAutomaticGain).value_or(true);
}

void Settings::internalSettingsChanged() {
    m_instrument.setAutomaticGain(automaticGain(m_defaults));
}
