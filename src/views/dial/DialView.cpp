#include "dial/DialView.h"

#include <QQuickWindow>
#include <QTimerEvent>

#include "artwork/Artwork.h"
#include "dial/Announcement.h"
#include "dial/DialFace.h"
#include "dial/DialGeometry.h"
#include "dial/DialNode.h"
#include "dial/TooltipFormat.h"

namespace {

constexpr qreal kSide = 80;
constexpr int kBubbleMilliseconds = 1000;       // after a step that no finger holds
constexpr int kAnnouncementMilliseconds = 500;  // only the last value of a quick turn is spoken

}  // namespace

DialView::DialView(QQuickItem* parent) : FingersItem(parent) {
    setFlag(ItemHasContents);
    setImplicitSize(kSide, kSide);
    setActiveFocusOnTab(true);
}

DialView::~DialView() {
    ensureNoTooltip();
}

float DialView::value() const {
    return (1.f - m_position) * m_minValue + m_position * m_maxValue;
}

void DialView::setValue(float value) {
    if (!isComponentComplete()) {
        m_valueWhenComplete = value;
        return;
    }
    turnTo(DialGeometry::clamped((value - m_minValue) / (m_maxValue - m_minValue)));
    updateAngle();
}

void DialView::componentComplete() {
    QQuickItem::componentComplete();
    if (m_valueWhenComplete)
        setValue(*m_valueWhenComplete);
}

void DialView::setImage(const QString& name) {
    m_image = name;
    redrawAll();
}

void DialView::setGlyph(const QString& name) {
    if (name == m_glyph)
        return;
    m_glyph = name;
    redrawAll();
    Q_EMIT spokenTextChanged();  // a formatter may tell what the glyph shows
}

void DialView::setNotchRadius(float radius) {
    m_notchRadius = radius;
    updateAngle();
}

void DialView::turnTo(float position) {
    if (position == m_position)
        return;
    m_position = position;
    if (m_tooltip)
        m_tooltip->setText(formatTooltip(false));
    Q_EMIT normalisedValueChanged();
    Q_EMIT spokenTextChanged();
}

QString DialView::formatTooltip(bool accessible) const {
    if (m_tooltipFormatter != nullptr)
        return m_tooltipFormatter->formatDialView(*this, accessible);
    const bool spoken = accessible && !m_accessibleTooltipFormat.isEmpty();
    return TooltipFormat::applied(spoken ? m_accessibleTooltipFormat : m_tooltipFormat,
                                  double(value() * m_tooltipScale));
}

void DialView::showTooltip() {
    QQuickItem* const container = m_bubbleContainer ? m_bubbleContainer.data() : parentItem();
    if (m_tooltip || (m_tooltipFormat.isEmpty() && m_tooltipFormatter == nullptr))
        return;
    if (container == nullptr)
        return;
    m_tooltip = PopupBubbleView::popupBubbleWithTarget(this, container);
    m_tooltip->setText(formatTooltip(false) + "MM");  // room to grow without a change of size
    m_tooltip->setArrowTarget({width() / 2, height() / 6});
    m_tooltip->sizeToFit();
    m_tooltip->setText(formatTooltip(false));
}

void DialView::ensureNoTooltip() {
    m_bubbleTime.stop();
    if (m_tooltip)
        m_tooltip->dismiss();
    m_tooltip = nullptr;
}

void DialView::announce() {
    Announcement::post(*this, double(value()));
}

void DialView::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_bubbleTime.timerId()) {
        ensureNoTooltip();
    } else if (event->timerId() == m_announcement.timerId()) {
        m_announcement.stop();
        announce();
    } else if (event->timerId() == m_holdTime.timerId()) {
        held();
    } else {
        QQuickItem::timerEvent(event);
    }
}

// Turning

void DialView::stepTo(float position) {
    showTooltip();
    m_bubbleTime.start(kBubbleMilliseconds, this);
    const float before = m_position;
    turnTo(DialGeometry::clamped(position));
    if (m_position != before)
        changedByPlayer();
}

void DialView::changedByPlayer() {
    updateAngle();
    if (m_target)
        m_target(*this);
    Q_EMIT valueChanged();
    if (Announcement::isWanted())
        m_announcement.start(kAnnouncementMilliseconds, this);  // takes back one still to come
}

// Drawing

void DialView::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size())
        redrawAll();
}

void DialView::updateAngle() {
    update();
}

void DialView::redrawAll() {
    m_redrawAll = true;
    updateAngle();
}

qreal DialView::screenScale() const {
    return window() != nullptr ? window()->effectiveDevicePixelRatio() : 1;
}

QPointF DialView::notchCentre() const {
    return DialGeometry::notchCentre(middle(), m_position, m_notchRadius, screenScale());
}

QPointF DialView::lampCentre(std::uint32_t lamp) const {
    const float place = DialGeometry::lampPlace(lamp, lampCount());
    return DialGeometry::onArc(middle() + centreOffset(), place, lampRadius());
}

float DialView::lampAlpha(std::uint32_t lamp) const {
    return DialGeometry::lampAlpha(lamp, lampCount(), m_position);
}

QSGNode* DialView::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* node = static_cast<DialNode*>(old);
    if (node == nullptr || m_redrawAll) {
        delete node;
        QList<QPointF> lamps;
        for (std::uint32_t lamp = 0; lamp < lampCount(); ++lamp)
            lamps.append(lampCentre(lamp));
        const qreal scale = screenScale();
        const auto face = DialFace::picture(size(), scale, Artwork::image(m_image, scale),
                                            Artwork::image(unlitDotName(), scale), lamps);
        const DialPictures pictures{face, Artwork::image("button-notch.png", scale),
                                    Artwork::image(litDotName(), scale),
                                    m_glyph.isEmpty() ? QImage() : Artwork::image(m_glyph, scale)};
        node = new DialNode(*window(), pictures, middle(), lamps);
        m_redrawAll = false;
    }
    node->setNotch(notchCentre());
    for (std::uint32_t lamp = 0; lamp < lampCount(); ++lamp)
        node->setLampAlpha(lamp, lampAlpha(lamp));
    return node;
}
