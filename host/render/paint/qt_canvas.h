// The canvas over a painter of Qt: of an image, a PDF page, or a window.
#pragma once

#include "host/render/canvas.h"

#include <QHash>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

namespace vk::render {

class QtCanvas : public Canvas {
public:
    // With a page of alpha 0 erasing makes transparent where the device can, else white.
    QtCanvas(QPainter& painter, QRgb page, bool isRaster) : m_painter(painter), m_page(page), m_raster(isRaster) {}

    void stroke(std::span<const Point2> points, bool closed, const Pen& pen) override;
    void fill(const Rings& rings, bool nonZero, std::uint32_t argb) override;
    void fillGradient(const Rings& rings, const Gradient& gradient) override;
    void erase(const Rings& rings) override;
    bool image(const std::string& file, Point2 corner, VcGeVector2d width, VcGeVector2d height, const Rings& outline,
               const ImageAdjustment& adjustment) override;
    void pushClip(const Rings& rings, bool inverted) override;
    void popClip() override;

private:
    enum class Mode { None, Stroke, Fill };
    void setPen(const Pen& pen);
    void setFill(const QBrush& brush);
    void drawRings(const Rings& rings, Qt::FillRule rule);
    const QImage& loaded(const QString& file);

    QPainter& m_painter;
    QRgb m_page;
    bool m_raster;
    Mode m_mode = Mode::None;
    Pen m_pen;
    std::uint32_t m_fill = 0;
    QVector<QPointF> m_points;
    QHash<QString, QImage> m_images;
};

}  // namespace vk::render
