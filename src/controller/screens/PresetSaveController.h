#pragma once

#include <QObject>

#include "parameters/Settings.h"

class PresetSaveController;

/// Who stores a preset, and knows the names.
class PresetSaveDelegate {
  public:
    virtual ~PresetSaveDelegate() = default;
    /// 0 none, 1 a user's preset, -1 a protected one.
    virtual int hasPresetWithName(const std::string& name) = 0;
    /// Stores it under the name, which is as typed, and closes the panel; or tells the panel why it
    /// cannot.
    virtual void savedPreset(PresetSaveController& panel, const Preset& preset,
                             const std::string& as) = 0;
};

/// The panel that gives the present settings a name. [main]
class PresetSaveController : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString presetName READ presetName WRITE textChanged NOTIFY changed)
    Q_PROPERTY(QString explanation READ explanation NOTIFY changed)
    Q_PROPERTY(bool canSave READ canSave NOTIFY changed)
    Q_PROPERTY(bool failed READ failed NOTIFY changed)

  public:
    explicit PresetSaveController(PresetSaveDelegate& delegate) : m_delegate(delegate) {}

    QString title() const { return tr("Save Preset"); }
    /// What is to be saved; its name is the one proposed.
    void setPreset(const Preset& preset);
    /// As typed.
    const QString& presetName() const { return m_presetName; }
    const QString& explanation() const { return m_explanation; }
    bool canSave() const { return m_canSave; }
    /// The explanation says why the last attempt failed.
    bool failed() const { return m_failed; }

    Q_INVOKABLE void textChanged(const QString& text);
    /// Does nothing where it cannot save.
    Q_INVOKABLE void performSave();
    /// It could not be stored. The name and the preset stay for another attempt.
    void fail(const QString& reason);

  Q_SIGNALS:
    void changed();

  private:
    void explain(bool canSave, const QString& explanation);

    PresetSaveDelegate& m_delegate;
    Preset m_preset;
    QString m_presetName;
    QString m_explanation;
    bool m_canSave = false;
    bool m_failed = false;
};
