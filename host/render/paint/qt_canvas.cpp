#include "host/render/paint/qt_canvas.h"

#include <QImageReader>
#include <QLinearGradient>
#include <QRadialGradient>

#include <algorithm>
#include <cmath>

namespace vk::render {

namespace {

QPainterPath pathOf(const Rings& rings, Qt::FillRule rule)
{
    QPainterPath path;
    path.setFillRule(rule);
    rings.forEach([&](std::span<const Point2> ring) {
        path.moveTo(ring[0].x, ring[0].y);
        for (const Point2& p : ring.subspan(1))
            path.lineTo(p.x, p.y);
        path.closeSubpath();
    });
    return path;
}

// Brightness and contrast of 50 leave an image as it is.
QImage adjusted(QImage image, const ImageAdjustment& a)
{
    if (a.brightness == 50 && a.contrast == 50)
        return image;
    image = image.convertToFormat(QImage::Format_ARGB32);
    int table[256];
    for (int i = 0; i < 256; ++i) {
        const double contrasted = (i - 127.5) * (a.contrast / 50.0) + 127.5;
        table[i] = std::clamp(int(std::lround(contrasted + (a.brightness - 50) * 2.55)), 0, 255);
    }
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            line[x] = qRgba(table[qRed(line[x])], table[qGreen(line[x])], table[qBlue(line[x])], qAlpha(line[x]));
    }
    return image;
}

}

// Lines of a pixel go a faster way of the painter, which takes a width of 0.
void QtCanvas::setPen(const Pen& pen)
{
    if (m_mode == Mode::Stroke && m_pen == pen)
        return;
    const bool hairline = m_raster && pen.width <= 1.05;
    m_painter.setPen(
        QPen(QColor::fromRgba(pen.argb), hairline ? 0 : pen.width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    m_painter.setBrush(Qt::NoBrush);
    m_pen = pen;
    m_mode = Mode::Stroke;
}

void QtCanvas::setFill(const QBrush& brush)
{
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(brush);
    m_mode = Mode::Fill;
}

void QtCanvas::stroke(std::span<const Point2> points, bool closed, const Pen& pen)
{
    setPen(pen);
    if (points.size() == 2)
        return m_painter.drawLine(QPointF(points[0].x, points[0].y), QPointF(points[1].x, points[1].y));
    m_points.clear();
    for (const Point2& p : points)
        m_points.append(QPointF(p.x, p.y));
    if (closed)
        m_painter.drawPolygon(m_points.constData(), m_points.size());
    else
        m_painter.drawPolyline(m_points.constData(), m_points.size());
}

void QtCanvas::drawRings(const Rings& rings, Qt::FillRule rule)
{
    if (rings.ends.size() != 1)
        return m_painter.drawPath(pathOf(rings, rule));
    m_points.clear();
    for (const Point2& p : rings.points)
        m_points.append(QPointF(p.x, p.y));
    m_painter.drawPolygon(m_points.constData(), m_points.size(), rule);
}

void QtCanvas::fill(const Rings& rings, bool nonZero, std::uint32_t argb)
{
    if (m_mode != Mode::Fill || m_fill != argb)
        setFill(QColor::fromRgba(argb));
    m_fill = argb;
    drawRings(rings, nonZero ? Qt::WindingFill : Qt::OddEvenFill);
}

void QtCanvas::fillGradient(const Rings& rings, const Gradient& g)
{
    QGradientStops stops;
    for (const auto& [at, argb] : g.stops)
        stops.append({at, QColor::fromRgba(argb)});
    const QPointF from(g.from.x, g.from.y), to(g.to.x, g.to.y);
    QLinearGradient linear(from, to);
    QRadialGradient radial(from, std::max((g.to - g.from).length(), 1e-6), QPointF(g.focus.x, g.focus.y));
    QGradient& gradient = g.radial ? static_cast<QGradient&>(radial) : linear;
    gradient.setStops(stops);
    setFill(gradient);
    drawRings(rings, Qt::OddEvenFill);
    m_mode = Mode::None;
}

void QtCanvas::erase(const Rings& rings)
{
    const bool clears = qAlpha(m_page) == 0 && m_raster;
    setFill(QColor::fromRgba(qAlpha(m_page) ? m_page : 0xffffffff));
    if (clears)
        m_painter.setCompositionMode(QPainter::CompositionMode_Clear);
    drawRings(rings, Qt::OddEvenFill);
    m_painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    m_mode = Mode::None;
}

const QImage& QtCanvas::loaded(const QString& file)
{
    const auto at = m_images.constFind(file);
    if (at != m_images.constEnd())
        return at.value();
    constexpr qint64 kMostPixels = 400'000'000;
    QImageReader reader(file);
    const QSize size = reader.size();
    const bool tooLarge = size.isValid() && qint64(size.width()) * size.height() > kMostPixels;
    return *m_images.insert(file, tooLarge ? QImage() : reader.read());
}

bool QtCanvas::image(const std::string& file, Point2 corner, VcGeVector2d width, VcGeVector2d height,
                     const Rings& outline, const ImageAdjustment& adjustment)
{
    QImage image = loaded(QString::fromStdString(file));
    if (image.isNull())
        return false;
    image = adjusted(std::move(image), adjustment);
    // Shrunk smoothly beforehand, since the painter takes single pixels.
    const QSize target(std::max(1, int(std::ceil(width.length()))), std::max(1, int(std::ceil(height.length()))));
    if (m_raster && target.width() * 2 < image.width() && target.height() * 2 < image.height())
        image = image.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const Point2 top = corner + height;
    const double w = image.width(), h = image.height();
    m_painter.save();
    m_painter.setClipPath(pathOf(outline, Qt::OddEvenFill), Qt::IntersectClip);
    m_painter.setRenderHint(QPainter::SmoothPixmapTransform);
    m_painter.setOpacity(1 - adjustment.fade / 100.0);
    m_painter.setTransform(QTransform(width.x / w, width.y / w, -height.x / h, -height.y / h, top.x, top.y), true);
    m_painter.drawImage(QPointF(0, 0), image);
    m_painter.restore();
    m_mode = Mode::None;
    return true;
}

void QtCanvas::pushClip(const Rings& rings, bool inverted)
{
    m_painter.save();
    QPainterPath path = pathOf(rings, Qt::OddEvenFill);
    if (inverted) {
        constexpr double kEverywhere = 1e5;
        path.addRect(-kEverywhere, -kEverywhere, 2 * kEverywhere, 2 * kEverywhere);
    }
    m_painter.setClipPath(path, Qt::IntersectClip);
    m_mode = Mode::None;
}

void QtCanvas::popClip()
{
    m_painter.restore();
    m_mode = Mode::None;
}

}  // namespace vk::render
