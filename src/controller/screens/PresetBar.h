#pragma once

#include <QObject>

#include "parameters/Settings.h"

/// The preset in use, as the toolbar shows it, and its neighbours in the list. [main]
class PresetBar : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(bool modificationNotice READ modificationNotice NOTIFY changed)
    Q_PROPERTY(bool canDelete READ canDelete NOTIFY changed)

  public:
    PresetBar(Settings& settings, PresetStore& store) : m_settings(settings), m_store(store) {}

    QString title() const { return QString::fromStdString(m_settings.pickerTitle()); }
    bool modificationNotice() const { return m_settings.isModified(); }
    bool canDelete() const { return m_settings.canDelete(); }

    /// Chooses the preset before or behind the current one in the order of the list, round about.
    Q_INVOKABLE void previous() { step(-1); }
    Q_INVOKABLE void next() { step(1); }

    /// The preset of that name, if there is one.
    Q_INVOKABLE void choose(const QString& name);
    PresetStore& store() { return m_store; }

    void update() { Q_EMIT changed(); }

  Q_SIGNALS:
    void changed();

  private:
    void step(int by);

    Settings& m_settings;
    PresetStore& m_store;
};
