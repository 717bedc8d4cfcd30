#include "take/TakeBubble.h"

#include <QQuickWindow>

void TakeBubble::setTarget(QQuickItem* target) {
    if (target == m_target)
        return;
    drop();
    m_target = target;
    Q_EMIT targetChanged();
}

void TakeBubble::setText(const QString& text) {
    if (text == m_text)
        return;
    m_text = text;
    if (text.isEmpty())
        drop();
    else if (m_bubble)
        m_bubble->setText(text);
    else
        show();
    Q_EMIT textChanged();
}

// Over everything, so that no panel hides it.
void TakeBubble::show() {
    if (!m_target || !m_target->window())
        return;
    m_bubble = PopupBubbleView::popupBubbleWithTarget(m_target, m_target->window()->contentItem());
    m_bubble->setText(m_text);
    m_bubble->setArrowTarget({m_target->width() / 2, m_target->height() / 4});
    m_bubble->sizeToFit();
}

void TakeBubble::drop() {
    if (m_bubble)
        m_bubble->dismiss();
    m_bubble = nullptr;
}
