// The colour dialog: the palette, by layer, by block, and true colours where they are allowed.
#pragma once

#include "sdk/vccm.h"

#include <QDialog>
#include <memory>
#include <optional>

namespace Ui {
class ColorDialog;
}

namespace vk::ui {

class ColorDialog : public QDialog {
    Q_OBJECT

public:
    struct Options {
        bool allowByLayer = true;
        bool allowTrueColor = false;
        int layerColour = 7;  // what by layer stands for, shown beside the name
    };
    ColorDialog(const VcCmColor& colour, const Options& options, QWidget* parent);
    ~ColorDialog() override;

    const VcCmColor& colour() const { return m_colour; }

    void accept() override;

private:
    std::optional<VcCmColor> parse(const QString& text) const;
    QString textFor(const VcCmColor& colour) const;
    void take(const VcCmColor& colour);
    void typed(const QString& text);
    void mixed();
    void show(const VcCmColor& colour);
    void showSwatch();

    std::unique_ptr<Ui::ColorDialog> m_ui;
    VcCmColor m_colour;
    Options m_options;
};

}  // namespace vk::ui
