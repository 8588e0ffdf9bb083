// The 255 colours of the palette: 24 hues of ten shades, beneath them the first nine colours and the greys.
#pragma once

#include <QWidget>

namespace vk::ui {

class PaletteView : public QWidget {
    Q_OBJECT

public:
    explicit PaletteView(QWidget* parent = nullptr);

    // 0 shows none as chosen.
    void setCurrent(int index);
    int current() const { return m_current; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void picked(int index);
    void accepted();  // a double click

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

private:
    QRectF cell(int column, int row) const;
    void paintCell(QPainter& painter, const QRectF& place, int index) const;
    int indexAt(const QPointF& point) const;
    void pick(int index);
    int m_current = 0;
};

}  // namespace vk::ui
