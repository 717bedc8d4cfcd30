#include <QQuickWindow>
#include <algorithm>
#include <cmath>
#include <utility>

#include "keyboard/PixelScale.h"
#include "wave/WaveCurve.h"
#include "wave/WaveView2.h"

namespace {

constexpr double kHeadWidth = 1;  // points
constexpr double kPlayHeadWidth = 2;
constexpr float kGutterOpacity = 0.2f;

}  // namespace

void WaveView2::geometryChange(const QRectF& now, const QRectF& before) {
    FingersItem::geometryChange(now, before);
    if (now.size() == before.size())
        return;
    m_ruler->setPosition({0, waveHeight()});
    m_ruler->setSize({width(), std::min(height(), WaveRuler::kHeight)});
    m_viewport.setWidth(width());
    m_tiles.setBounds(width(), waveHeight());
    rangeChanged(WaveUpdate::refresh);
    Q_EMIT waveHeightChanged();
}

void WaveView2::itemChange(ItemChange change, const ItemChangeData& data) {
    FingersItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged)
        runClock();
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) {
        m_tiles.backgroundRefresh();
        m_curveStale = true;
        polish();
        update();
    }
}

void WaveView2::updatePolish() {
    m_pictures.draw(m_tiles, m_viewport, pixelScale(*this));
    if (std::exchange(m_curveStale, false))
        refreshCurve();
}

void WaveView2::refreshCurve() {
    const bool seen = m_sound && WaveCurve::isSeenIn(m_viewport) && waveHeight() > 0;
    m_curveFresh = m_curveFresh || seen || !m_curve.isNull();
    m_curve = seen ? WaveCurve::of(*m_sound, m_viewport,
                                   {m_waveColour, m_sampleColour, waveHeight(), pixelScale(*this)})
                   : QImage();
}

QSGNode* WaveView2::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* const node = old ? static_cast<WaveViewNode*>(old) : new WaveViewNode(*window());
    const QRectF wave(0, 0, width(), waveHeight());
    const double middle = std::floor(waveHeight() / 2);
    const auto tiles = m_pictures.shown(m_tiles, m_viewport, waveHeight(), pixelScale(*this));
    node->showBackground(wave, m_backgroundTop, m_backgroundBottom);
    node->showTiles(tiles);
    node->showGutter({0, 0, 1, waveHeight()}, QColor::fromRgbF(0, 0, 0, kGutterOpacity));
    node->showCentre({0, middle, width(), 1}, m_lineColour);
    node->showCurve(m_curve, wave, std::exchange(m_curveFresh, false) || !old);
    node->showLines(lines(), waveHeight());
    return node;
}

std::vector<UprightLine> WaveView2::lines() const {
    std::vector<UprightLine> lines;
    const auto add = [&](double frame, double lineWidth, const QColor& colour) {
        const double x = m_viewport.xOf(frame);
        if (x >= 0 && x <= width())
            lines.push_back({x, lineWidth, colour});
    };
    for (const float head : m_heads)
        add(double(head), kHeadWidth, m_headColour);
    if (m_hearing && m_hearing->playHead() >= 0)
        add(m_hearing->playHead(), kPlayHeadWidth, m_playHeadColour);
    return lines;
}
