#include "wave/WaveRangeView2.h"

#include <QGuiApplication>
#include <QSGRectangleNode>
#include <algorithm>
#include <cmath>

#include "keyboard/PixelScale.h"
#include "screens/WaveTime.h"

namespace {

constexpr qreal kEdgeLine = 2;
// The handles lie above each other, so that both can be reached wherever the edges are: the one of
// the start below the sound's name, the one of the stop above the ruler.
constexpr qreal kHandleInset = 20;
constexpr qreal kScrollZone = 24;      // points from the view's ends
constexpr qreal kScrollSpeed = 300;    // points a second, at the very end and outside
constexpr qreal kScrollThreshold = 8;  // points that a finger moves before

class RangeNode : public QSGNode {
  public:
    explicit RangeNode(QQuickWindow& window) {
        for (QSGRectangleNode*& node : m_nodes) {
            node = window.createRectangleNode();
            appendChildNode(node);
        }
    }
    void show(std::size_t index, const QRectF& rect, const QColor& colour) {
        m_nodes[index]->setRect(rect.width() > 0 ? rect : QRectF());
        m_nodes[index]->setColor(colour);
    }

  private:
    std::array<QSGRectangleNode*, 4> m_nodes;  // two shades, two lines
};

}  // namespace

WaveRangeView2::WaveRangeView2(QQuickItem* parent)
    : QQuickItem(parent),
      m_handles{
          new WaveRangeHandle(WaveRangeEdges::atStart, tr("Selection start"), *this, *this),
          new WaveRangeHandle(WaveRangeEdges::atStop, tr("Selection end"), *this, *this),
      },
      m_observer(NotificationCentre::defaultCentre().addObserver(WaveSelection::kNotification,
                                                                 [this] { layOut(); })) {
    setFlag(ItemHasContents);
    for (const WaveRangeHandle* handle : m_handles)
        connect(handle, &WaveRangeHandle::pressedChanged, this, &WaveRangeView2::heldChanged);
    connect(this, &WaveRangeView2::coloursChanged, this, &QQuickItem::update);
    layOut();
}

WaveRangeView2::~WaveRangeView2() {
    NotificationCentre::defaultCentre().removeObserver(m_observer);
    for (const WaveRangeHandle* handle : m_handles)
        delete handle;  // they report to us
}

void WaveRangeView2::setView(WaveView2* view) {
    if (view == m_view)
        return;
    if (m_view)
        m_view->disconnect(this);
    m_view = view;
    if (view) {
        connect(view, &WaveView2::viewChanged, this, &WaveRangeView2::layOut);
        connect(view, &WaveView2::waveHeightChanged, this, &WaveRangeView2::layOut);
        connect(view, &WaveView2::interactionsChanged, this, &WaveRangeView2::layOut);
        connect(view, &QObject::destroyed, this, &WaveRangeView2::layOut);
    }
    layOut();
    Q_EMIT viewChanged();
}

void WaveRangeView2::setSelection(WaveSelection* selection) {
    if (selection == m_selection)
        return;
    if (m_selection)
        m_selection->disconnect(this);
    m_selection = selection;
    if (selection)
        connect(selection, &QObject::destroyed, this, &WaveRangeView2::layOut);
    layOut();
    Q_EMIT selectionChanged();
}

// What is seen

bool WaveRangeView2::isHeld() const {
    return std::ranges::any_of(m_handles, [](const auto* handle) { return handle->isPressed(); });
}

QString WaveRangeView2::lengthText() const {
    return m_selection ? WaveTime::text(m_selection->stop() - m_selection->start()) : QString();
}

bool WaveRangeView2::mayBeMoved() const {
    return m_shown && (m_view->interactions() & WaveView2::select) != 0;
}

WaveRangeEdges WaveRangeView2::edges() const {
    return {m_selection->start(), m_selection->stop(), m_selection->length()};
}

bool WaveRangeView2::isInView(int frame) const {
    return m_view->viewStart() <= frame && frame <= m_view->viewStop();
}

void WaveRangeView2::layOut() {
    m_shown = m_view && m_selection && m_selection->length() > 0 && width() > 0 &&
              m_view->viewStop() > m_view->viewStart();
    const qreal waveHeight = m_shown ? m_view->waveHeight() : 0;
    if (m_shown) {
        const qreal from = std::clamp(m_view->xOf(m_selection->start()), 0., width());
        const qreal to = std::clamp(m_view->xOf(m_selection->stop()), from, width());
        m_selected = {from, 0, to - from, waveHeight};
    }
    for (WaveRangeHandle* handle : m_handles)
        placeHandle(*handle, waveHeight);
    update();
    Q_EMIT laidOut();
}

void WaveRangeView2::placeHandle(WaveRangeHandle& handle, qreal waveHeight) {
    handle.setVisible(mayBeMoved());
    if (!mayBeMoved())
        return;
    const bool atStart = handle.edge() == WaveRangeEdges::atStart;
    const qreal inset = std::clamp(waveHeight / 2 - handle.height(), 0., kHandleInset);
    const qreal y = atStart ? inset : waveHeight - inset - handle.height();
    const int frame = edges().at(handle.edge());
    handle.tell(frame, m_selection->length());
    handle.place(m_view->xOf(frame), y, isInView(frame));
}

QSGNode* WaveRangeView2::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* node = static_cast<RangeNode*>(old);
    if (!m_shown) {
        delete node;
        return nullptr;
    }
    if (!node)
        node = new RangeNode(*window());
    // On whole pixels, so that all lines are alike.
    const qreal scale = pixelScale(*this);
    const auto whole = [scale](qreal x) { return std::round(x * scale) / scale; };
    const qreal from = whole(m_selected.left());
    const qreal to = whole(m_selected.right());
    const qreal height = m_selected.height();
    const auto line = [&](WaveRangeEdges::Edge edge, qreal x) {
        const qreal left = std::clamp(x - kEdgeLine / 2, 0., std::max(0., width() - kEdgeLine));
        return isInView(edges().at(edge)) ? QRectF(whole(left), 0, kEdgeLine, height) : QRectF();
    };
    node->show(0, {0, 0, from, height}, m_shadeColour);
    node->show(1, {to, 0, width() - to, height}, m_shadeColour);
    node->show(2, line(WaveRangeEdges::atStart, from), m_lineColour);
    node->show(3, line(WaveRangeEdges::atStop, to), m_lineColour);
    return node;
}

void WaveRangeView2::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size())
        layOut();
}

// What is done

qreal WaveRangeView2::framesPerPoint() const {
    return (m_view->viewStop() - m_view->viewStart()) / width();
}

void WaveRangeView2::move(WaveRangeEdges::Edge edge, int frame) {
    WaveRangeEdges moved = edges();
    moved.move(edge, frame);
    m_selection->select(moved.start, moved.stop);
}

void WaveRangeView2::handleDragged(WaveRangeHandle& handle, qreal edgeX) {
    Drag& drag = m_drags[handle.edge()];
    if (!mayBeMoved())
        return;
    if (!drag.active)
        drag = {true, false, m_view->xOf(edges().at(handle.edge())), 0};
    drag.x = edgeX;
    drag.scrolls |= std::abs(edgeX - drag.began) > kScrollThreshold;
    follow(handle.edge());
    runClock();
}

void WaveRangeView2::follow(WaveRangeEdges::Edge edge) {
    if (!mayBeMoved())
        return;
    const int frame = m_view->frameAt(m_drags[edge].x);
    const bool free = QGuiApplication::keyboardModifiers() & Qt::ShiftModifier;
    const bool snaps = !free && m_view->sound();
    const int within = int(std::min(kSnap * framesPerPoint(), 1e6));
    move(edge, snaps ? edges().snapped(*m_view->sound(), frame, within) : frame);
}

void WaveRangeView2::handleLetGo(WaveRangeHandle& handle) {
    m_drags[handle.edge()] = {};
    runClock();
}

void WaveRangeView2::handleDoubleTapped(WaveRangeHandle& handle) {
    handleSentTo(handle, handle.edge() == WaveRangeEdges::atStop);
}

void WaveRangeView2::handleSentTo(WaveRangeHandle& handle, bool end) {
    if (!mayBeMoved())
        return;
    move(handle.edge(), end ? m_selection->length() : 0);
    bringIntoView(handle.edge());
}

void WaveRangeView2::handleStepped(WaveRangeHandle& handle, int steps, bool ofFrames) {
    if (!mayBeMoved())
        return;
    const qreal step = ofFrames ? 1 : std::max(1., framesPerPoint());
    move(handle.edge(), edges().at(handle.edge()) + int(std::lround(steps * step)));
    bringIntoView(handle.edge());
}

void WaveRangeView2::handleFocused(WaveRangeHandle& handle) {
    if (mayBeMoved())
        bringIntoView(handle.edge());
}

/// With some of the sound around it, unless it is seen already.
void WaveRangeView2::bringIntoView(WaveRangeEdges::Edge edge) {
    const int frame = edges().at(edge);
    if (isInView(frame))
        return;
    const int from = m_view->viewStart();
    const int span = m_view->viewStop() - from;
    const int wanted = frame < from ? frame - span / 8 : frame - span + span / 8;
    const int start = std::clamp(wanted, 0, std::max(0, m_selection->length() - span));
    m_view->setViewFrom(start, start + span, int(WaveUpdate::refresh));
}

// Scrolling under a finger that rests near an end of the view

qreal WaveRangeView2::scrollSpeed(const Drag& drag) const {
    const qreal outside =
        std::max(drag.x - (width() - kScrollZone), 0.) - std::max(kScrollZone - drag.x, 0.);
    const bool atEnd =
        outside < 0 ? m_view->viewStart() <= 0 : m_view->viewStop() >= m_selection->length();
    return drag.scrolls && !atEnd ? kScrollSpeed * std::clamp(outside / kScrollZone, -1., 1.) : 0;
}

void WaveRangeView2::runClock() {
    m_clock.run(mayBeMoved() && std::ranges::any_of(m_drags, [this](const Drag& drag) {
                    return drag.active && scrollSpeed(drag) != 0;
                }));
}

void WaveRangeView2::scroll(double seconds) {
    if (!mayBeMoved())
        return runClock();
    for (const auto edge : {WaveRangeEdges::atStart, WaveRangeEdges::atStop}) {
        const qreal speed = m_drags[edge].active ? scrollSpeed(m_drags[edge]) : 0;
        if (speed == 0)
            continue;
        m_view->scrollBy(speed * seconds);
        follow(edge);
    }
    runClock();
}
