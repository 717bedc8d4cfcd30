#pragma once

#include <QObject>
#include <QStringList>
#include <memory>

#include "midi/MidiInput.h"
#include "parameters/Settings.h"
#include "recording/AudioTake.h"
#include "recording/Performance.h"
#include "screens/AlertController.h"
#include "screens/AudioSetup.h"
#include "screens/DeviceNews.h"
#include "screens/DialBank.h"
#include "screens/EnvelopeState.h"
#include "screens/FileOpening.h"
#include "screens/GrainModeState.h"
#include "screens/MidiSetup.h"
#include "screens/Notices.h"
#include "screens/PerformanceScreen.h"
#include "screens/Presentation.h"
#include "screens/PresetBar.h"
#include "screens/PresetScreens.h"
#include "screens/ScreenControls.h"
#include "screens/SettingsController.h"
#include "screens/Sharing.h"
#include "screens/TakeScreen.h"
#include "screens/VoicesState.h"
#include "screens/WaveEditor.h"
#include "screens/WaveHearing.h"
#include "screens/WaveSelection.h"
#include "screens/WaveState.h"
#include "screens/iPadTutorialManager.h"
#include "startup/InstanceLock.h"
#include "startup/Lifecycle.h"

/// The one controller of the screen: owns the instrument and the rooms beside it, and forwards what
/// the player does to them. It knows no item of the screen; the screen binds to it. [main]
class OmbrixViewController : public QObject,
                             private SettingsDelegate,
                             private PerformanceCompleteDelegate {
    Q_OBJECT
    Q_PROPERTY(DialBank* dials READ dials CONSTANT)
    Q_PROPERTY(EnvelopeState* envelope READ envelope CONSTANT)
    Q_PROPERTY(GrainModeState* grainMode READ grainMode CONSTANT)
    Q_PROPERTY(PresetBar* presetBar READ presetBar CONSTANT)
    Q_PROPERTY(VoicesState* voices READ voices CONSTANT)
    Q_PROPERTY(WaveState* wave READ wave CONSTANT)
    Q_PROPERTY(WaveSelection* selection READ selection CONSTANT)
    Q_PROPERTY(WaveHearing* hearing READ hearing CONSTANT)
    Q_PROPERTY(WaveEditor* editor READ editor CONSTANT)
    Q_PROPERTY(TakeScreen* take READ take CONSTANT)
    Q_PROPERTY(PerformanceScreen* performance READ performance CONSTANT)
    Q_PROPERTY(Sharing* sharing READ sharing CONSTANT)
    Q_PROPERTY(SettingsController* settings READ settings CONSTANT)
    Q_PROPERTY(AudioSetup* audio READ audio CONSTANT)
    Q_PROPERTY(MidiSetup* midi READ midi CONSTANT)
    Q_PROPERTY(Presentation* presentation READ presentation CONSTANT)
    Q_PROPERTY(AlertController* alert READ alert CONSTANT)
    Q_PROPERTY(Notices* notices READ notices CONSTANT)
    Q_PROPERTY(iPadTutorialManager* tutorial READ tutorial CONSTANT)

  public:
    OmbrixViewController();
    ~OmbrixViewController() override;

    /// Builds everything: audio, settings, views. What was kept from the last run is restored at
    /// the next turn of the main loop.
    void viewDidLoad();

    DialBank* dials() { return m_dials.get(); }
    EnvelopeState* envelope() { return m_envelope.get(); }
    GrainModeState* grainMode() { return m_grainMode.get(); }
    PresetBar* presetBar() { return m_presetBar.get(); }
    VoicesState* voices() { return m_voices.get(); }
    WaveState* wave() { return m_wave.get(); }
    WaveSelection* selection() { return m_selection.get(); }
    WaveHearing* hearing() { return m_hearing.get(); }
    WaveEditor* editor() { return m_editor.get(); }
    TakeScreen* take() { return m_takeScreen.get(); }
    PerformanceScreen* performance() { return m_performanceScreen.get(); }
    Sharing* sharing() { return m_sharing.get(); }
    SettingsController* settings() { return m_settingsController.get(); }
    AudioSetup* audio() { return m_audio.get(); }
    MidiSetup* midi() { return m_midiSetup.get(); }
    Presentation* presentation() { return m_presentation.get(); }
    AlertController* alert() { return m_alert.get(); }
    Notices* notices() { return m_notices.get(); }
    iPadTutorialManager* tutorial() { return m_tutorial.get(); }
    UserDefaults& defaults() { return m_defaults; }
    /// Whether files are being opened or a sound is on its way.
    bool arriving() const { return m_restore || m_files->busy() || m_sounds->loading(); }
    Instrument& instrument() { return *m_instrument; }
    MidiControls& midiControls() { return m_midi->controls(); }

    /// The keys, 0 to 87.
    Q_INVOKABLE void tinkleIvory(int key);
    Q_INVOKABLE void untinkleIvory(int key);
    Q_INVOKABLE void silence();

    Q_INVOKABLE void toolbarPresetClicked();
    Q_INVOKABLE void toolbarSaveClicked();
    Q_INVOKABLE void toolbarDeleteClicked();
    Q_INVOKABLE void toolbarSettingsClicked();
    Q_INVOKABLE void toolbarShareClicked();
    Q_INVOKABLE void grainModeClicked();
    /// Opens the sheet on which the sound is edited, unless a take is being made.
    Q_INVOKABLE void editClicked();
    /// Shows the tutorial from its first page.
    Q_INVOKABLE void helpClicked();
    /// The first frame is on the screen: a newcomer is led about.
    void windowShown() { m_tutorial->show(); }
    /// Escape: closes the alert, else the popover. False when nothing was open.
    Q_INVOKABLE bool closeTop();
    bool canPresent(std::uint32_t tag) { return m_presentation->canPresent(tag); }

    // As the screens of presets report back.
    void itemPicked(const QVariant& item, int index, const QString& forSource);
    int hasPresetWithName(const std::string& name);
    void savedPreset(PresetSaveController& panel, const Preset& preset, const std::string& as);

    /// Sounds become the sound in use (the last of them), presets and bundles are taken in and the
    /// last one is chosen.
    Q_INVOKABLE void openFiles(const QStringList& paths);

    void willForeground(bool returning);
    void willBackground(bool leaving);
    /// Nothing comes after it: only the first call counts.
    void willTerminate();

  Q_SIGNALS:
    /// A key is to be shown pressed or not, after a MIDI message.
    void keyShown(int key, bool highlighted);

  private:
    /// Hands on what MIDI does to the keys.
    struct ShownKeys final : NotesDelegate {
        explicit ShownKeys(OmbrixViewController& of) : controller(of) {}
        void keyShown(int key, bool highlighted) override {
            Q_EMIT controller.keyShown(key, highlighted);
        }
        OmbrixViewController& controller;
    };

    void initialiseAudio();
    void initialiseSettings();
    void initialiseViews();
    void initialiseHearing();
    void initialiseEditing();
    bool isAlive() const { return m_lifecycle && !m_terminated; }
    void observe();
    void askAfterCrash();
    void internalSettingsChanged();
    void initialiseRecording();
    void initialiseAudioSetup();

    // What the settings say.
    void pickerTitleChanged(const std::string& title) override;
    void modificationNoticeChanged(bool visible) override;
    void deleteButtonChanged(bool enabled) override;
    void settingsUpdated() override;
    void told(const std::string& line) override;

    void sendingToAudioCopy(PerformanceCompleteController& controller,
                            const QString& path) override;
    void sendingToOtherApp(PerformanceCompleteController& controller, const QString& path) override;
    void sendingToDropbox(PerformanceCompleteController& controller, const QString& path) override;

    UserDefaults m_defaults;
    std::unique_ptr<iPadTutorialManager> m_tutorial;
    std::unique_ptr<Notices> m_notices = std::make_unique<Notices>();
    std::unique_ptr<Presentation> m_presentation = std::make_unique<Presentation>();
    std::unique_ptr<AlertController> m_alert = std::make_unique<AlertController>();
    std::unique_ptr<AudioSetup> m_audio = std::make_unique<AudioSetup>(m_defaults);
    std::unique_ptr<SettingsController> m_settingsController;
    std::unique_ptr<InstanceLock> m_place;
    std::unique_ptr<RunningMarker> m_marker;
    std::unique_ptr<UnsavedTake> m_unsaved;
    std::unique_ptr<Instrument> m_instrument;
    std::unique_ptr<MidiInput> m_midi;  // plays the instrument: goes before it
    std::unique_ptr<WaveSelection> m_selection = std::make_unique<WaveSelection>();
    std::unique_ptr<WaveHearing> m_hearing;  // stops the engine: goes just before the instrument
    std::unique_ptr<WaveLoading> m_sounds;
    std::unique_ptr<PresetStore> m_store;
    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<Lifecycle> m_lifecycle;
    std::unique_ptr<AudioTake> m_take;
    std::unique_ptr<Performance> m_performance;
    std::unique_ptr<DialBank> m_dials;
    std::unique_ptr<ScreenControls> m_screenControls;  // of m_midi
    std::unique_ptr<MidiSetup> m_midiSetup;            // shows on the dials: goes before them
    std::unique_ptr<EnvelopeState> m_envelope;
    std::unique_ptr<GrainModeState> m_grainMode;
    std::unique_ptr<PresetBar> m_presetBar;
    std::unique_ptr<VoicesState> m_voices;
    std::unique_ptr<WaveState> m_wave;
    std::unique_ptr<WaveEditor> m_editor;
    std::unique_ptr<TakeScreen> m_takeScreen;
    std::unique_ptr<PerformanceScreen> m_performanceScreen;
    std::unique_ptr<PresetScreens> m_presetScreens;
    std::unique_ptr<FileOpening> m_files;
    std::unique_ptr<DeviceNews> m_deviceNews;
    NotificationCentre::Token m_settingsObserver = 0;
    std::unique_ptr<Sharing> m_sharing;
    ShownKeys m_shownKeys{*this};
    RunLoop::Token m_restore = 0;
    bool m_terminated = false;
};
