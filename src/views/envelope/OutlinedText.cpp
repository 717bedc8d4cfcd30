#include "envelope/OutlinedText.h"

#include <QPainterPathStroker>

namespace {

// Opaque: the software renderer fills what shines through with several threads, and waits for them.
const QColor kEdge = QColor::fromRgbF(0.03f, 0.025f, 0.015f);
constexpr double kEdgeWidth = 4;  // points, half of it around the letters

}  // namespace

const OutlinedText::Letter& OutlinedText::letter(QChar character) {
    const auto known = m_letters.constFind(character);
    if (known != m_letters.constEnd())
        return *known;
    QPainterPath shape;
    shape.addText(0, 0, m_font, character);
    shape.setFillRule(Qt::WindingFill);
    QPainterPathStroker stroker(
        QPen(kEdge, kEdgeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    QPainterPath edge = stroker.createStroke(shape);
    edge.setFillRule(Qt::WindingFill);
    const double advance = QFontMetricsF(m_font).horizontalAdvance(character);
    return *m_letters.insert(character, {advance, shape, edge.simplified()});
}

double OutlinedText::width(const QString& text) {
    double sum = 0;
    for (const QChar character : text)
        sum += letter(character).advance;
    return sum;
}

void OutlinedText::draw(const QString& text, QPointF at, const QColor& colour, QPainter& painter) {
    QPainterPath shapes, edges;
    shapes.setFillRule(Qt::WindingFill);
    edges.setFillRule(Qt::WindingFill);  // where edges meet they are no darker
    for (const QChar character : text) {
        const Letter& drawn = letter(character);
        shapes.addPath(drawn.shape.translated(at));
        edges.addPath(drawn.edge.translated(at));
        at.rx() += drawn.advance;
    }
    painter.fillPath(edges, kEdge);
    painter.fillPath(shapes, colour);
}
