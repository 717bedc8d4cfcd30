#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include "parameters/Parameters.h"

class DialBank;

/// One dial as the screen sees it, from its row of the parameter table. Values are dial values,
/// not stored ones. [main]
class DialState : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString key READ key CONSTANT)
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(float minValue READ minValue CONSTANT)
    Q_PROPERTY(float maxValue READ maxValue CONSTANT)
    Q_PROPERTY(QList<float> notches READ notches CONSTANT)
    Q_PROPERTY(float value READ value WRITE tweak NOTIFY valueChanged)
    Q_PROPERTY(QString glyph READ glyph NOTIFY glyphChanged)

  public:
    DialState(DialBank& bank, ParameterId id);

    ParameterId id() const { return m_id; }
    /// Of the control, "grainSpeed" and so on.
    QString key() const;
    /// What stands below the dial, translated.
    QString name() const;
    float minValue() const { return parameter(m_id).dial.low; }
    float maxValue() const { return parameter(m_id).dial.high; }
    /// Positions 0 to 1 of the sweep, in the order in which they count.
    QList<float> notches() const;
    float value() const { return m_value; }
    /// Name of the picture in the knob's middle; empty for none.
    QString glyph() const { return m_glyph; }

    /// What the dial shows, or says, for a value.
    Q_INVOKABLE QString text(float value, bool spoken) const;
    /// The player turned the dial.
    Q_INVOKABLE void tweak(float value);
    /// Back to the value of the preset that was chosen; on the grain speed the sync switch turns.
    Q_INVOKABLE void doubleTapped();

    /// From the instrument; the player has done nothing. A value beyond the dial's range shows at
    /// its end.
    void setValue(float value);
    void setGlyph(const QString& glyph);

  Q_SIGNALS:
    void valueChanged();
    void glyphChanged();

  private:
    float limited(float value) const;

    DialBank& m_bank;
    ParameterId m_id;
    float m_value;
    QString m_glyph;
};
