#include "host/ui/icons.h"

#include <QIcon>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

struct VkIcon {
    QIcon icon;
};

namespace vk::ui {

namespace {

constexpr int kSizes[] = {16, 32, 48, 64, 128};

// A triangle with its dimension line on a rounded ground, in a square of 32.
void draw(QPainter& painter)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x1f, 0x4e, 0x79));
    painter.drawRoundedRect(QRectF(1, 1, 30, 30), 6, 6);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, 2.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolygon(QPolygonF({{7, 20}, {25, 20}, {16, 6}}));
    painter.setPen(QPen(QColor(0xff, 0xb8, 0x4d), 2));
    painter.drawLine(QLineF(7, 26, 25, 26));
    painter.drawLine(QLineF(7, 23.5, 7, 28.5));
    painter.drawLine(QLineF(25, 23.5, 25, 28.5));
}

QIcon drawnIcon()
{
    QIcon icon;
    for (const int size : kSizes) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.scale(size / 32.0, size / 32.0);
        draw(painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

}

// Not destroyed: pixmaps need Qt's application, which is never deleted.
HICON programIcon()
{
    static const auto* icon = new VkIcon{drawnIcon()};
    return icon;
}

const QIcon& qtIcon(HICON icon) { return icon->icon; }

}  // namespace vk::ui
