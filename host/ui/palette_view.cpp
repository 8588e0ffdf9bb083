#include "host/ui/palette_view.h"

#include "sdk/vccm.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>

namespace vk::ui {

namespace {

constexpr int kColumns = 24;
constexpr int kShadeRows = 10;
constexpr int kRows = kShadeRows + 1;
constexpr double kGapRows = 0.5;  // between the shades and the last row
constexpr int kFirstShade = 10;
constexpr int kStandard = 9;
constexpr int kFirstGrey = 250, kGreys = 6;
constexpr int kGreysColumn = kColumns - kGreys;

// Lighter shades on top, the full colour in the middle, the even indexes; darker below.
constexpr int kShadeOfRow[kShadeRows] = {8, 6, 4, 2, 0, 1, 3, 5, 7, 9};

int indexOf(int column, int row)
{
    if (row < kShadeRows)
        return kFirstShade + column * 10 + kShadeOfRow[row];
    if (column < kStandard)
        return 1 + column;
    return column >= kGreysColumn ? kFirstGrey + column - kGreysColumn : 0;
}

// The first cell for an index that has none.
QPoint placeOf(int index)
{
    for (int row = 0; row < kRows; ++row)
        for (int column = 0; column < kColumns; ++column)
            if (index != 0 && indexOf(column, row) == index)
                return {column, row};
    return {};
}

bool isDark(QRgb colour) { return qGray(colour) < 128; }

}

PaletteView::PaletteView(QWidget* parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::MinimumExpanding);
}

void PaletteView::setCurrent(int index)
{
    m_current = index;
    update();
}

QSize PaletteView::sizeHint() const { return minimumSizeHint() * 1.25; }

QSize PaletteView::minimumSizeHint() const
{
    const int side = fontMetrics().height();
    return {side * kColumns, int(side * (kRows + kGapRows))};
}

QRectF PaletteView::cell(int column, int row) const
{
    const double w = width() / double(kColumns), h = height() / (kRows + kGapRows);
    return {column * w, (row + (row == kShadeRows ? kGapRows : 0)) * h, w, h};
}

int PaletteView::indexAt(const QPointF& point) const
{
    for (int row = 0; row < kRows; ++row)
        for (int column = 0; column < kColumns; ++column)
            if (cell(column, row).contains(point))
                return indexOf(column, row);
    return 0;
}

void PaletteView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    for (int row = 0; row < kRows; ++row)
        for (int column = 0; column < kColumns; ++column)
            paintCell(painter, cell(column, row), indexOf(column, row));
    if (hasFocus()) {
        painter.setPen(QPen(palette().highlight(), 1, Qt::DotLine));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

// With an edge, or white would be lost on white.
void PaletteView::paintCell(QPainter& painter, const QRectF& place, int index) const
{
    if (index == 0)
        return;
    const QRgb colour = vccmPaletteRgb(index);
    const QRectF square = place.adjusted(1, 1, -1, -1);
    painter.fillRect(square, QColor(colour));
    painter.setPen(QPen(palette().color(QPalette::Mid), 1));
    painter.drawRect(square);
    if (index == m_current) {
        painter.setPen(QPen(isDark(colour) ? Qt::white : Qt::black, 2));
        painter.drawRect(square.adjusted(2, 2, -2, -2));
    }
}

void PaletteView::pick(int index)
{
    if (index == 0)
        return;
    setCurrent(index);
    emit picked(index);
}

void PaletteView::mousePressEvent(QMouseEvent* event) { pick(indexAt(event->localPos())); }

void PaletteView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (indexAt(event->localPos()))
        emit accepted();
}

// The arrows move to the next cell that has a colour.
void PaletteView::keyPressEvent(QKeyEvent* event)
{
    const QPoint step = event->key() == Qt::Key_Left    ? QPoint(-1, 0)
                        : event->key() == Qt::Key_Right ? QPoint(1, 0)
                        : event->key() == Qt::Key_Up    ? QPoint(0, -1)
                        : event->key() == Qt::Key_Down  ? QPoint(0, 1)
                                                        : QPoint();
    if (step.isNull()) {
        QWidget::keyPressEvent(event);
        return;
    }
    const QRect cells(0, 0, kColumns, kRows);
    QPoint at = placeOf(m_current) + step;
    while (cells.contains(at) && indexOf(at.x(), at.y()) == 0)
        at += step;
    if (cells.contains(at))
        pick(indexOf(at.x(), at.y()));
}

bool PaletteView::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const int index = indexAt(help->pos());
    const QColor colour(index ? vccmPaletteRgb(index) : 0);
    QToolTip::showText(
        help->globalPos(),
        index ? QString("%1: %2, %3, %4").arg(index).arg(colour.red()).arg(colour.green()).arg(colour.blue())
              : QString());
    return true;
}

}  // namespace vk::ui
