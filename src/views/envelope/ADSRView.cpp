#include "envelope/ADSRView.h"

#include <QKeyEvent>
#include <algorithm>
#include <cmath>

#include "envelope/ADSRSegment.h"
#include "text/CNumber.h"

namespace {

constexpr float kPlateauWidth = 88;      // points
constexpr float kLongest = 5;            // seconds
constexpr float kSidewaysThreshold = 8;  // points, before a touch of the plateau goes sideways
constexpr float kUpwardsThreshold = 4;
constexpr float kLeastTotal = 0.0001f;  // seconds that are drawn instead of none
constexpr float kStep = 0.05f;          // of a key, in seconds or of the level
constexpr float kFineStep = 0.01f;

/// What is not a number becomes 0.
float limited(float value, float high) {
    if (!(value > 0))
        return 0;
    return value < high ? value : high;
}

/// Rounded as the dials round, which QString does not at halves.
QString printed(const char* format, float value) {
    return QString::fromStdString(formattedNumber(format, double(value)));
}

QFont boldLabels() {
    QFont font("Lato");
    font.setBold(true);
    font.setPixelSize(12);
    return font;
}

}  // namespace

ADSRView::ADSRView(QQuickItem* parent)
    : OneFingerItem(parent), m_labelFont(boldLabels()), m_texts(m_labelFont) {
    setActiveFocusOnTab(true);
}

float* ADSRView::param(std::int32_t index) {
    switch (index) {
        case 0:
            return &m_attack;
        case 1:
            return &m_decay;
        case 2:
            return &m_sustain;
        case 3:
            return &m_releaseTime;
        default:
            return nullptr;
    }
}

void ADSRView::show(float& shownValue, float value) {
    if (shownValue == value)
        return;
    shownValue = value;
    redraw();
}

void ADSRView::redraw() {
    update();
    Q_EMIT shown();
    Q_EMIT stageFrameChanged();
}

void ADSRView::updated() {
    redraw();
    if (m_owner)
        m_owner->adsrViewUpdated(*this);
    Q_EMIT adsrViewUpdated();
}

void ADSRView::geometryChange(const QRectF& now, const QRectF& before) {
    OneFingerItem::geometryChange(now, before);
    if (now.size() == before.size())
        return;
    update();
    Q_EMIT stageFrameChanged();
}

float ADSRView::timeScale(float total) const {
    return (float(width()) - kPlateauWidth) / total;
}

void ADSRView::touchBegan(QPointF at) {
    if (m_grabIndex >= 0)
        return;
    // Undivided: without any time there is only a release to drag.
    const float k = timeScale(m_attack + m_decay + m_releaseTime);
    const float x = float(at.x());
    m_grabPos = at;
    if (x < k * m_attack)
        m_grabIndex = kGrabAttack;
    else if (x < k * (m_attack + m_decay))
        m_grabIndex = kGrabDecay;
    else if (x < k * (m_attack + m_decay) + kPlateauWidth)
        m_grabIndex = kGrabPlateau;
    else
        m_grabIndex = kGrabRelease;
    m_grabValue = *param(m_grabIndex);
    setStage(m_grabIndex);
    Q_EMIT pressedChanged();
}

void ADSRView::touchEnded() {
    m_grabIndex = kGrabNothing;
    Q_EMIT pressedChanged();
}

void ADSRView::touchMoved(QPointF at) {
    const float dx = float(at.x()) - float(m_grabPos.x());
    const float dy = float(at.y()) - float(m_grabPos.y());
    switch (m_grabIndex) {
        case kGrabAttack:
        case kGrabDecay:
        case kGrabRelease:
            return dragTime(dx);
        case kGrabPlateau:
            return decideDirection(dx, dy);
        case kGrabSustain:
            m_sustain = limited(m_grabValue - dy / float(height()), 1);
            return updated();
        case kGrabAttackAndDecay:
            return stretch(dx);
        default:
            return;
    }
}

void ADSRView::dragTime(float dx) {
    // The graph's right end is fixed, so pulling the release to the left makes it longer.
    const float change = dx / float(width());
    *param(m_grabIndex) =
        limited(m_grabValue + (m_grabIndex == kGrabRelease ? -change : change), kLongest);
    updated();
}

void ADSRView::decideDirection(float dx, float dy) {
    if (std::abs(dy) > kUpwardsThreshold) {
        m_grabIndex = kGrabSustain;
        return;
    }
    if (!(std::abs(dx) > kSidewaysThreshold))
        return;
    const float k = timeScale(m_attack + m_decay + m_releaseTime);
    if (float(m_grabPos.x()) < k * (m_attack + m_decay) + kPlateauWidth / 2) {
        m_grabIndex = kGrabAttackAndDecay;
        m_grabValue = m_attack;
        m_grabValue2 = m_decay;
    } else {
        m_grabIndex = kGrabRelease;
        m_grabValue = m_releaseTime;
        setStage(kGrabRelease);
    }
}

/// The decay takes the share attack / decay of the change, the attack what is left of it.
void ADSRView::stretch(float dx) {
    const float change = dx / float(width());
    float share = 1;
    if (m_grabValue2 > 0)
        share = m_grabValue <= 0 ? 0 : std::min(1.f, m_grabValue / m_grabValue2);
    m_attack = limited(m_grabValue + change * (1 - share), kLongest);
    m_decay = limited(m_grabValue2 + change * share, kLongest);
    updated();
}

void ADSRView::setStage(int stage) {
    stage = std::clamp(stage, 0, 3);
    if (stage == m_stage)
        return;
    m_stage = stage;
    Q_EMIT stageChanged();
    Q_EMIT stageFrameChanged();
}

float ADSRView::stageHighest() const {
    return m_stage == kGrabPlateau ? 1 : kLongest;
}

void ADSRView::step(int direction, bool fine) {
    float& value = *param(m_stage);
    const float change = float(direction) * (fine ? kFineStep : kStep);
    value = limited(value + change, stageHighest());
    updated();
}

void ADSRView::keyPressEvent(QKeyEvent* event) {
    if (event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier))
        return event->ignore();
    const bool fine = event->modifiers() & Qt::ShiftModifier;
    switch (event->key()) {
        case Qt::Key_Left:
            return setStage(m_stage - 1);
        case Qt::Key_Right:
            return setStage(m_stage + 1);
        case Qt::Key_Up:
            return step(1, fine);
        case Qt::Key_Down:
            return step(-1, fine);
        default:
            event->ignore();
    }
}

QString ADSRView::spokenText() const {
    return tr("Attack %1 seconds, decay %2 seconds, sustain %3 percent, release %4 seconds")
        .arg(printed("%.2f", m_attack), printed("%.2f", m_decay), printed("%.0f", m_sustain * 100),
             printed("%.2f", m_releaseTime));
}

std::array<float, 4> ADSRView::widths() const {
    const float total = m_attack + m_decay + m_releaseTime;
    const float k = timeScale(total > 0 ? total : kLeastTotal);
    return {k * m_attack, k * m_decay, kPlateauWidth, k * m_releaseTime};
}

QRectF ADSRView::stageFrame() const {
    const auto all = widths();
    float x = 0;
    for (int before = 0; before < m_stage; ++before)
        x = x + all[std::size_t(before)] - 1;
    return QRectF(double(x), 0, double(all[std::size_t(m_stage)]), height());
}

void ADSRView::paint(QPainter* painter) {
    static const QColor deep = QColor::fromRgbF(0.375f, 0.3f, 0.075f);
    static const QColor dim = QColor::fromRgbF(0.5f, 0.4f, 0.1f);
    static const QColor line = QColor::fromRgbF(1.0f, 0.8f, 0.2f);
    const auto seconds = [](float time) { return printed("%2.2fs", time); };
    const auto [attackWidth, decayWidth, plateauWidth, releaseWidth] = widths();

    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(line, 1));
    painter->setBrush(deep);
    float x = graphFrom(0, 1, 0, attackWidth, "◂ A ▸", seconds(m_attack), *painter);
    painter->setBrush(dim);
    x = graphFrom(1, m_sustain, x, decayWidth, "◂ D ▸", seconds(m_decay), *painter);
    painter->setBrush(deep);
    x = graphFrom(m_sustain, m_sustain, x, plateauWidth, "◂ S ▸",
                  printed("%2.0f%%", m_sustain * 100), *painter);
    painter->setBrush(dim);
    graphFrom(m_sustain, 0, x, releaseWidth, "◂ R ▸", seconds(m_releaseTime), *painter);
}

float ADSRView::graphFrom(float from, float to, float x, float width, const QString& label,
                          const QString& label2, QPainter& painter) const {
    const ADSRSegment segment{from, to, x, width, size()};
    segment.drawBars(painter);
    segment.drawLine(painter);
    segment.drawTexts(label, label2, m_texts, painter);
    return x + width - 1;
}

float ADSRView::slideLevel(float level, float x, float width, QPainter& painter) const {
    const double middle = double(x + width / 2);
    const double y = height() - double(level) * height();
    painter.drawLine(QPointF(middle, 0), QPointF(middle, height()));
    painter.drawLine(QPointF(middle - 11, y), QPointF(middle + 11, y));
    return x + width;
}
