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
    Q_PROPERTY(bool learnable READ learnable NOTIFY learningChanged)
    Q_PROPERTY(bool learning READ learning NOTIFY learningChanged)
    Q_PROPERTY(QString controllers READ controllers NOTIFY learningChanged)

  public:
    /// What MIDI controllers are to the dial.
    struct Learning {
        bool offered = false;  // it can be learned
        bool waiting = false;  // the next one that moves is
        QString controllers;   // "CC 74"; empty for none
        bool operator==(const Learning&) const = default;
    };

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
    /// Whether MIDI controllers can be given to the dial, whether it waits for one to move, and
    /// which turn it.
    bool learnable() const { return m_learning.offered; }
    bool learning() const { return m_learning.waiting; }
    QString controllers() const { return m_learning.controllers; }

    /// What the dial shows, or says, for a value.
    Q_INVOKABLE QString text(float value, bool spoken) const;
    /// The player turned the dial.
    Q_INVOKABLE void tweak(float value);
    /// Back to the value of the preset that was chosen; on the grain speed the sync switch turns.
    Q_INVOKABLE void doubleTapped();
    /// The player wants a MIDI controller to turn it, no longer, or none at all.
    Q_INVOKABLE void learn() { Q_EMIT learnAsked(true); }
    Q_INVOKABLE void stopLearning() { Q_EMIT learnAsked(false); }
    Q_INVOKABLE void forget() { Q_EMIT forgetAsked(); }

    /// From the instrument; the player has done nothing. A value beyond the dial's range shows at
    /// its end.
    void setValue(float value);
    void setGlyph(const QString& glyph);
    void setLearning(const Learning& learning);

  Q_SIGNALS:
    void valueChanged();
    void glyphChanged();
    void learningChanged();
    void learnAsked(bool wanted);
    void forgetAsked();

  private:
    float limited(float value) const;

    DialBank& m_bank;
    ParameterId m_id;
    float m_value;
    QString m_glyph;
    Learning m_learning;
};
