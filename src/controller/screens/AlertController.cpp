#include "screens/AlertController.h"

void AlertController::show(Alert alert, Answer answer) {
    if (m_shown)
        clickedButtonAtIndex(0);
    m_alert = std::move(alert);
    m_answer = std::move(answer);
    m_shown = true;
    Q_EMIT changed();
}

void AlertController::clickedButtonAtIndex(int button) {
    if (!m_shown)
        return;
    m_shown = false;
    const Answer answer = std::exchange(m_answer, nullptr);
    Q_EMIT changed();
    if (answer)
        answer(m_alert.tag, button);
}

bool AlertController::dismiss() {
    const bool shown = m_shown;
    clickedButtonAtIndex(0);
    return shown;
}
