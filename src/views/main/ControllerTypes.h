#pragma once

#include <QtQml/qqml.h>

#include "screens/OmbrixViewController.h"

// The controller's objects as types of the QML module, so that what binds to them is checked. The
// screen is given them; it makes none.
struct OmbrixViewControllerForeign {
    Q_GADGET
    QML_FOREIGN(OmbrixViewController)
    QML_NAMED_ELEMENT(OmbrixViewController)
    QML_UNCREATABLE("is given")
};

struct DialBankForeign {
    Q_GADGET
    QML_FOREIGN(DialBank)
    QML_NAMED_ELEMENT(DialBank)
    QML_UNCREATABLE("is given")
};

struct DialStateForeign {
    Q_GADGET
    QML_FOREIGN(DialState)
    QML_NAMED_ELEMENT(DialState)
    QML_UNCREATABLE("is given")
};

struct EnvelopeStateForeign {
    Q_GADGET
    QML_FOREIGN(EnvelopeState)
    QML_NAMED_ELEMENT(EnvelopeState)
    QML_UNCREATABLE("is given")
};

struct GrainModeStateForeign {
    Q_GADGET
    QML_FOREIGN(GrainModeState)
    QML_NAMED_ELEMENT(GrainModeState)
    QML_UNCREATABLE("is given")
};

struct PresetBarForeign {
    Q_GADGET
    QML_FOREIGN(PresetBar)
    QML_NAMED_ELEMENT(PresetBar)
    QML_UNCREATABLE("is given")
};

struct VoicesStateForeign {
    Q_GADGET
    QML_FOREIGN(VoicesState)
    QML_NAMED_ELEMENT(VoicesState)
    QML_UNCREATABLE("is given")
};

struct WaveStateForeign {
    Q_GADGET
    QML_FOREIGN(WaveState)
    QML_NAMED_ELEMENT(WaveState)
    QML_UNCREATABLE("is given")
};

struct WaveSelectionForeign {
    Q_GADGET
    QML_FOREIGN(WaveSelection)
    QML_NAMED_ELEMENT(WaveSelection)
    QML_UNCREATABLE("is given")
};

struct WaveHearingForeign {
    Q_GADGET
    QML_FOREIGN(WaveHearing)
    QML_NAMED_ELEMENT(WaveHearing)
    QML_UNCREATABLE("is given")
};

struct WaveEditorForeign {
    Q_GADGET
    QML_FOREIGN(WaveEditor)
    QML_NAMED_ELEMENT(WaveEditor)
    QML_UNCREATABLE("is given")
};

struct TakeScreenForeign {
    Q_GADGET
    QML_FOREIGN(TakeScreen)
    QML_NAMED_ELEMENT(TakeScreen)
    QML_UNCREATABLE("is given")
};

struct PerformanceScreenForeign {
    Q_GADGET
    QML_FOREIGN(PerformanceScreen)
    QML_NAMED_ELEMENT(PerformanceScreen)
    QML_UNCREATABLE("is given")
};

struct SharingForeign {
    Q_GADGET
    QML_FOREIGN(Sharing)
    QML_NAMED_ELEMENT(Sharing)
    QML_UNCREATABLE("is given")
};

struct SettingsControllerForeign {
    Q_GADGET
    QML_FOREIGN(SettingsController)
    QML_NAMED_ELEMENT(SettingsController)
    QML_UNCREATABLE("is given")
};

struct AudioSetupForeign {
    Q_GADGET
    QML_FOREIGN(AudioSetup)
    QML_NAMED_ELEMENT(AudioSetup)
    QML_UNCREATABLE("is given")
};

struct MidiSetupForeign {
    Q_GADGET
    QML_FOREIGN(MidiSetup)
    QML_NAMED_ELEMENT(MidiSetup)
    QML_UNCREATABLE("is given")
};

struct NetworkSetupForeign {
    Q_GADGET
    QML_FOREIGN(NetworkSetup)
    QML_NAMED_ELEMENT(NetworkSetup)
    QML_UNCREATABLE("is given")
};

struct ControllerSetupForeign {
    Q_GADGET
    QML_FOREIGN(ControllerSetup)
    QML_NAMED_ELEMENT(ControllerSetup)
    QML_UNCREATABLE("is given")
};

struct PresentationForeign {
    Q_GADGET
    QML_FOREIGN(Presentation)
    QML_NAMED_ELEMENT(Presentation)
    QML_UNCREATABLE("is given")
};

struct AlertControllerForeign {
    Q_GADGET
    QML_FOREIGN(AlertController)
    QML_NAMED_ELEMENT(AlertController)
    QML_UNCREATABLE("is given")
};

struct NoticesForeign {
    Q_GADGET
    QML_FOREIGN(Notices)
    QML_NAMED_ELEMENT(Notices)
    QML_UNCREATABLE("is given")
};

struct ItemPickerControllerForeign {
    Q_GADGET
    QML_FOREIGN(ItemPickerController)
    QML_NAMED_ELEMENT(ItemPickerController)
    QML_UNCREATABLE("is given")
};

struct PresetSaveControllerForeign {
    Q_GADGET
    QML_FOREIGN(PresetSaveController)
    QML_NAMED_ELEMENT(PresetSaveController)
    QML_UNCREATABLE("is given")
};

struct PerformanceCompleteControllerForeign {
    Q_GADGET
    QML_FOREIGN(PerformanceCompleteController)
    QML_NAMED_ELEMENT(PerformanceCompleteController)
    QML_UNCREATABLE("is given")
};
