#pragma once

#include "dial/DialView.h"
#include "screens/DialState.h"

/// A dial of one parameter: it takes range, notches, glyph, value and texts from the parameter's
/// state, and tells it what the player does. [main]
class ParameterDial : public DialView, private DialViewTooltipFormatting {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(DialState* model READ model WRITE setModel NOTIFY modelChanged)

  public:
    explicit ParameterDial(QQuickItem* parent = nullptr);

    /// Not owned; may go before the dial, which then stays as it is.
    DialState* model() const { return m_model; }
    void setModel(DialState* model);

  Q_SIGNALS:
    void modelChanged();

  private:
    QString formatDialView(const DialView& dial, bool accessible) override;
    void takeOver();

    QPointer<DialState> m_model;
};
