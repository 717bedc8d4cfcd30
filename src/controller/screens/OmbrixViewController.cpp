#include "screens/OmbrixViewController.h"

#include <utility>

#include "folders/Folders.h"
#include "screens/TutorialPages.h"
#include "startup/CrashAlert.h"

OmbrixViewController::OmbrixViewController() {
    m_settingsController = std::make_unique<SettingsController>(m_defaults);
    m_tutorial =
        std::make_unique<iPadTutorialManager>(tutorialPages(), kTutorialProgressKey, m_defaults);
    connect(m_settingsController.get(), &SettingsController::tutorialWanted, this,
            &OmbrixViewController::helpClicked);
}

OmbrixViewController::~OmbrixViewController() {
    NotificationCentre::defaultCentre().removeObserver(m_settingsObserver);
    if (m_midi)
        m_midi->controls().setTarget(nullptr);
    RunLoop::main().cancel(m_restore);
}

void OmbrixViewController::viewDidLoad() {
    initialiseAudio();
    initialiseSettings();
    initialiseViews();
    observe();
    m_restore = RunLoop::main().callAfter(0, [this] {
        m_restore = 0;
        m_settings->restoreLastPreset();
    });
}

void OmbrixViewController::initialiseAudio() {
    m_midi = std::make_unique<MidiInput>(m_defaults);
    m_instrument = std::make_unique<Instrument>(Settings::automaticGain(m_defaults));
    m_midi->setNotes(&m_instrument->notes());
    m_instrument->play();
}

void OmbrixViewController::initialiseSettings() {
    told(WaveChoice::makeDataFolder());
    const std::string folder = Folders::data()->string();
    m_place = std::make_unique<InstanceLock>(folder);
    m_marker = std::make_unique<RunningMarker>(folder, *m_place);
    m_unsaved = std::make_unique<UnsavedTake>(*m_place);
    m_store = std::make_unique<PresetStore>(
        WaveChoice::presetFilename(), WaveChoice::resource("default-presets.plist").value_or(""),
        [this](const std::string& line) { told(line); });
    m_sounds = std::make_unique<WaveLoading>(m_instrument->waves());
    m_settings = std::make_unique<Settings>(*m_instrument, *m_sounds, *m_store, m_defaults,
                                            *m_unsaved, static_cast<SettingsDelegate&>(*this));
    m_lifecycle = std::make_unique<Lifecycle>(*m_instrument, *m_settings, *m_marker);
}

void OmbrixViewController::initialiseViews() {
    m_take = std::make_unique<AudioTake>(m_instrument->waves(), m_unsaved.get());
    m_performance =
        std::make_unique<Performance>(m_instrument->notes(), m_instrument->recordingUnit());
    m_dials = std::make_unique<DialBank>(*m_instrument, *m_settings);
    m_screenControls = std::make_unique<ScreenControls>(
        ScreenControls::Rooms{*m_dials, *m_settings, *m_store}, [this] { silence(); });
    midiControls().setTarget(m_screenControls.get());
    m_midiSetup = std::make_unique<MidiSetup>(*m_midi, m_midi->controls(), *m_dials, m_defaults);
    m_envelope = std::make_unique<EnvelopeState>(*m_instrument, *m_settings, *m_dials);
    m_grainMode = std::make_unique<GrainModeState>(*m_instrument, *m_settings);
    m_presetBar = std::make_unique<PresetBar>(*m_settings, *m_store);
    m_presetScreens = std::make_unique<PresetScreens>(
        PresetScreens::Rooms{*m_settings, *m_store, *m_grainMode, *m_presetBar, *m_presentation,
                             *m_alert},
        [this](const std::string& line) { told(line); });
    m_voices = std::make_unique<VoicesState>(*m_instrument);
    const auto tell = [this](const std::string& line) { told(line); };
    m_wave = std::make_unique<WaveState>(m_instrument->waves(), *m_sounds, tell);
    m_files = std::make_unique<FileOpening>(*m_settings, *m_store, tell);
    m_deviceNews = std::make_unique<DeviceNews>(tell);
    initialiseHearing();
    initialiseEditing();
    initialiseRecording();
    initialiseAudioSetup();
    if (m_marker->previousRunCrashed())
        askAfterCrash();
    m_marker->markRunning(true);
}

void OmbrixViewController::askAfterCrash() {
    m_alert->show({.tag = CrashAlert::kTag,
                   .title = tr(CrashAlert::kTitle),
                   .message = tr(CrashAlert::kMessage),
                   .cancel = tr(CrashAlert::kCancel),
                   .other = tr(CrashAlert::kReset)},
                  [this](std::uint32_t, int button) {
                      if (button == 1)
                          m_settings->resetAfterCrash();
                  });
}

void OmbrixViewController::observe() {
    m_instrument->notes().addDelegate(m_shownKeys);
    m_settingsObserver = NotificationCentre::defaultCentre().addObserver(
        kSettingsChangedNotification, [this] { internalSettingsChanged(); });
}

/// The keyboard is laid out anew by who shows it.
void OmbrixViewController::internalSettingsChanged() {
    m_settings->internalSettingsChanged();
}

void OmbrixViewController::initialiseHearing() {
    m_hearing = std::make_unique<WaveHearing>(m_selection.get());
    const auto frames = [this] {
        return m_wave->wave() ? static_cast<int>(m_wave->wave()->sampleCount()) : 0;
    };
    connect(m_wave.get(), &WaveState::waveChanged, this, [this, frames] {
        m_hearing->setSound(m_wave->wave());
        m_selection->reset(frames());
    });
    connect(m_wave.get(), &WaveState::waveEdited, this, [this, frames] {
        m_hearing->setSound(m_wave->wave());
        m_selection->resize(frames());
    });
}

void OmbrixViewController::initialiseEditing() {
    m_editor = std::make_unique<WaveEditor>(
        WaveEditor::Rooms{m_instrument->waves(), *m_sounds, m_unsaved.get(), *m_wave, *m_selection,
                          *m_hearing},
        [this](const std::string& line) { told(line); });
    connect(m_editor.get(), &WaveEditor::edited, this, [this] { m_settings->modify(); });
}

void OmbrixViewController::initialiseRecording() {
    m_takeScreen = std::make_unique<TakeScreen>(*m_take);
    m_performanceScreen = std::make_unique<PerformanceScreen>(*m_performance);
    m_sharing = std::make_unique<Sharing>(*m_presentation,
                                          static_cast<PerformanceCompleteDelegate&>(*this));
    const auto tell = [this](const QString& line) { told(line.toStdString()); };
    connect(m_takeScreen.get(), &TakeScreen::problem, this, tell);
    connect(m_takeScreen.get(), &TakeScreen::alert, this,
            [this](const QString& title, const QString& message, const QString& button) {
                m_alert->show({0, title, message, button, {}, false}, {});
            });
    // The microphone would hear it.
    connect(m_takeScreen.get(), &TakeScreen::recordingChanged, m_hearing.get(), &WaveHearing::stop);
    connect(m_performanceScreen.get(), &PerformanceScreen::changed, m_hearing.get(),
            [this, before = false]() mutable {
                const bool now = m_performanceScreen->recording();
                if (!std::exchange(before, now) && now)
                    m_hearing->stop();
            });
    connect(m_takeScreen.get(), &TakeScreen::taken, this, [this] {
        m_wave->update();
        m_settings->modify();
    });
    connect(m_performanceScreen.get(), &PerformanceScreen::problem, this, tell);
    connect(m_performanceScreen.get(), &PerformanceScreen::complete, m_sharing.get(),
            &Sharing::performanceComplete);
    connect(m_sharing.get(), &Sharing::told, this, tell);
    connect(m_sharing.get(), &Sharing::arrived, this, &OmbrixViewController::openFiles);
}

void OmbrixViewController::initialiseAudioSetup() {
    m_audio->setHost([this] { silence(); }, [this] { return m_take->recording(); });
    connect(m_presentation.get(), &Presentation::changed, m_audio.get(),
            [this] { m_audio->setShown(m_presentation->content() == m_settingsController.get()); });
}

void OmbrixViewController::tinkleIvory(int key) {
    m_instrument->notes().tinkleIvory(key);
}

void OmbrixViewController::untinkleIvory(int key) {
    m_instrument->notes().untinkleIvory(key);
}

void OmbrixViewController::silence() {
    m_instrument->silence();
    m_hearing->stop();
}

void OmbrixViewController::toolbarPresetClicked() {
    m_presetScreens->toolbarPresetClicked();
}

void OmbrixViewController::toolbarSaveClicked() {
    m_presetScreens->toolbarSaveClicked();
}

void OmbrixViewController::toolbarDeleteClicked() {
    m_presetScreens->toolbarDeleteClicked();
}

void OmbrixViewController::toolbarSettingsClicked() {
    if (!m_presentation->canPresent(Presentation::kSettings))
        return;
    m_settingsController->willAppear();
    m_presentation->present(Presentation::kSettings, m_settingsController.get());
}

void OmbrixViewController::toolbarShareClicked() {
    m_sharing->shareLast(QString::fromStdString(m_performance->recordingPerformanceLastFilename()));
}

void OmbrixViewController::grainModeClicked() {
    m_presetScreens->grainModeClicked();
}

void OmbrixViewController::editClicked() {
    if (!m_take->recording() && m_presentation->canPresent(Presentation::kEdit))
        m_presentation->presentSheet(Presentation::kEdit, m_editor.get(), nullptr);
}

void OmbrixViewController::helpClicked() {
    m_presentation->dismiss();
    m_tutorial->restart();
}

bool OmbrixViewController::closeTop() {
    return m_alert->dismiss() || m_presentation->dismiss();
}

void OmbrixViewController::openFiles(const QStringList& paths) {
    m_files->open(paths);
}

void OmbrixViewController::willForeground(bool returning) {
    if (isAlive())
        m_lifecycle->willForeground(returning);
}

void OmbrixViewController::willBackground(bool leaving) {
    if (isAlive())
        m_lifecycle->willBackground(leaving);
}

void OmbrixViewController::willTerminate() {
    if (isAlive()) {
        m_midi->setNotes(nullptr);
        m_lifecycle->willTerminate();
    }
    m_terminated = true;
}

/// Also when a preset was saved, and its sound with it.
void OmbrixViewController::pickerTitleChanged(const std::string&) {
    if (m_wave)
        m_wave->updateName();
    if (m_presetBar)
        m_presetBar->update();
}

void OmbrixViewController::modificationNoticeChanged(bool) {
    if (m_presetBar)
        m_presetBar->update();
}

void OmbrixViewController::deleteButtonChanged(bool) {
    if (m_presetBar)
        m_presetBar->update();
}

void OmbrixViewController::settingsUpdated() {
    m_dials->update();
    m_envelope->update();
    m_grainMode->update();
}

void OmbrixViewController::told(const std::string& line) {
    if (!line.empty())
        m_notices->tell(line);
}

void OmbrixViewController::itemPicked(const QVariant& item, int index, const QString& forSource) {
    m_presetScreens->itemPicked(item, index, forSource);
}

int OmbrixViewController::hasPresetWithName(const std::string& name) {
    return m_presetScreens->hasPresetWithName(name);
}

void OmbrixViewController::savedPreset(PresetSaveController& panel, const Preset& preset,
                                       const std::string& as) {
    m_presetScreens->savedPreset(panel, preset, as);
}

void OmbrixViewController::sendingToAudioCopy(PerformanceCompleteController&, const QString& path) {
    m_sharing->sendToAudioCopy(path);
}

void OmbrixViewController::sendingToOtherApp(PerformanceCompleteController&, const QString& path) {
    m_sharing->sendToOtherApp(path);
}

void OmbrixViewController::sendingToDropbox(PerformanceCompleteController&, const QString& path) {
    m_sharing->sendToDropbox(path);
}
