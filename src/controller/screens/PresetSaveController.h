#pragma once

#include <QObject>

#include "parameters/Settings.h"

/// Who stores a preset, and knows the names.
class PresetSaveDelegate {
  public:
    virtual ~PresetSaveDelegate() = default;
    /// 0 none, 1 a user's preset, -1 a protected one.
    virtual int hasPresetWithName(const std::string& name) = 0;
    virtual void presetController(const Preset& savedPreset, const std::string& as) = 0;
};

/// The panel that gives the present settings a name. [main]
class PresetSaveController : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString presetName READ presetName WRITE textChanged NOTIFY changed)
    Q_PROPERTY(QString explanation READ explanation NOTIFY changed)
    Q_PROPERTY(bool canSave READ canSave NOTIFY changed)

  public:
    explicit PresetSaveController(PresetSaveDelegate& delegate) : m_delegate(delegate) {}

    /// What is to be saved; its name is the one proposed.
    void setPreset(const Preset& preset);
    /// As typed.
    const QString& presetName() const { return m_presetName; }
    const QString& explanation() const { return m_explanation; }
    bool canSave() const { return m_canSave; }

    Q_INVOKABLE void textChanged(const QString& text);
    Q_INVOKABLE void performSave();

  Q_SIGNALS:
    void changed();

  private:
    PresetSaveDelegate& m_delegate;
    Preset m_preset;
    QString m_presetName;
    QString m_explanation;
    bool m_canSave = false;
};
