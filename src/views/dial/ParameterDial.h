#pragma once

#include "dial/DialView.h"
#include "screens/DialState.h"

/// A dial of one parameter: it takes range, notches, glyph, value and texts from the parameter's
/// state, and tells it what the player does. [main]
class ParameterDial : public DialView, private DialViewTooltipFormatting {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(DialState* dialState READ dialState WRITE setDialState NOTIFY dialStateChanged)

  public:
    explicit ParameterDial(QQuickItem* parent = nullptr);

    /// Not owned; may go before the dial, which then stays as it is.
    DialState* dialState() const { return m_state; }
    void setDialState(DialState* state);

  Q_SIGNALS:
    void dialStateChanged();

  private:
    QString formatDialView(const DialView& dial, bool accessible) override;
    void takeOver();

    QPointer<DialState> m_state;
};
