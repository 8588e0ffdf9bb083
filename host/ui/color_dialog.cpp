#include "host/ui/color_dialog.h"

#include "host/ui/icons.h"
#include "host/ui/modal.h"
#include "host/ui/qt_application.h"
#include "sdk/vced.h"
#include "sdk/vcui.h"
#include "ui_ColorDialog.h"

#include <QSignalBlocker>

namespace vk::ui {

namespace {

constexpr int kByBlock = 0, kByLayer = 256;
constexpr const char* kNames[] = {"", "red", "yellow", "green", "cyan", "blue", "magenta", "white"};

int namedIndex(const QString& text)
{
    for (int i = 1; i < int(std::size(kNames)); ++i)
        if (text.compare(kNames[i], Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

bool isName(const QString& text, const char* name) { return text.compare(name, Qt::CaseInsensitive) == 0; }

std::optional<VcCmColor> parseTrueColor(const QString& text)
{
    const QStringList parts = text.split(',');
    if (parts.size() != 3)
        return std::nullopt;
    int values[3];
    for (int i = 0; i < 3; ++i) {
        bool isNumber = false;
        values[i] = parts[i].trimmed().toInt(&isNumber);
        if (!isNumber || values[i] < 0 || values[i] > 255)
            return std::nullopt;
    }
    VcCmColor colour;
    colour.setRGB(std::uint8_t(values[0]), std::uint8_t(values[1]), std::uint8_t(values[2]));
    return colour;
}

}

ColorDialog::ColorDialog(const VcCmColor& colour, const Options& options, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::ColorDialog>()), m_colour(colour), m_options(options)
{
    m_ui->setupUi(this);
    setWindowIcon(qtIcon(programIcon()));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_ui->byLayerBtn->setVisible(options.allowByLayer);
    m_ui->byBlockBtn->setVisible(options.allowByLayer);
    if (!options.allowTrueColor)
        m_ui->tabWidget->removeTab(m_ui->tabWidget->indexOf(m_ui->trueColorPage));
    else if (colour.isByColor())
        m_ui->tabWidget->setCurrentWidget(m_ui->trueColorPage);
    show(m_colour);
    m_ui->index->setText(textFor(m_colour));
    m_ui->index->selectAll();
    m_ui->index->setFocus();

    connect(m_ui->paletteView, &PaletteView::picked, this,
            [this](int index) { take(VcCmColor::fromIndex(std::int16_t(index))); });
    connect(m_ui->paletteView, &PaletteView::accepted, this, &ColorDialog::accept);
    connect(m_ui->byLayerBtn, &QPushButton::clicked, this, [this] { take(VcCmColor::fromIndex(kByLayer)); });
    connect(m_ui->byBlockBtn, &QPushButton::clicked, this, [this] { take(VcCmColor::fromIndex(kByBlock)); });
    connect(m_ui->index, &QLineEdit::textChanged, this, &ColorDialog::typed);
    for (QSpinBox* spin : {m_ui->red, m_ui->green, m_ui->blue})
        connect(spin, QOverload<int>::of(&QSpinBox::valueChanged), this, &ColorDialog::mixed);
    connect(m_ui->pBtnOK, &QPushButton::clicked, this, &ColorDialog::accept);
    connect(m_ui->pBtnCancel, &QPushButton::clicked, this, &ColorDialog::reject);
}

ColorDialog::~ColorDialog() = default;

void ColorDialog::accept()
{
    if (m_ui->pBtnOK->isEnabled())
        QDialog::accept();
}

std::optional<VcCmColor> ColorDialog::parse(const QString& typed) const
{
    const QString text = typed.trimmed();
    bool isNumber = false;
    int index = text.toInt(&isNumber);
    if (!isNumber)
        index = isName(text, "ByLayer") ? kByLayer : isName(text, "ByBlock") ? kByBlock : namedIndex(text);
    const bool isLogical = index == kByLayer || index == kByBlock;
    if (isLogical ? m_options.allowByLayer : index > 0 && index < 256)
        return VcCmColor::fromIndex(std::int16_t(index));
    return m_options.allowTrueColor ? parseTrueColor(text) : std::nullopt;
}

QString ColorDialog::textFor(const VcCmColor& colour) const
{
    if (colour.isByColor())
        return QString("%1,%2,%3").arg(colour.red()).arg(colour.green()).arg(colour.blue());
    if (colour.isByLayer())
        return "ByLayer";
    return colour.isByBlock() ? QString("ByBlock") : QString::number(colour.colorIndex());
}

void ColorDialog::take(const VcCmColor& colour) { m_ui->index->setText(textFor(colour)); }

void ColorDialog::typed(const QString& text)
{
    const std::optional<VcCmColor> colour = parse(text);
    m_ui->pBtnOK->setEnabled(colour.has_value());
    if (colour)
        show(*colour);
}

void ColorDialog::mixed()
{
    VcCmColor colour;
    colour.setRGB(std::uint8_t(m_ui->red->value()), std::uint8_t(m_ui->green->value()),
                  std::uint8_t(m_ui->blue->value()));
    take(colour);
}

void ColorDialog::show(const VcCmColor& colour)
{
    m_colour = colour;
    m_ui->paletteView->setCurrent(colour.isByACI() ? colour.colorIndex() : 0);
    const QSignalBlocker red(m_ui->red), green(m_ui->green), blue(m_ui->blue);
    m_ui->red->setValue(colour.red());
    m_ui->green->setValue(colour.green());
    m_ui->blue->setValue(colour.blue());
    showSwatch();
}

void ColorDialog::showSwatch()
{
    const int layer = m_options.layerColour > 0 && m_options.layerColour < 256 ? m_options.layerColour : 7;
    const QRgb rgb = m_colour.isByLayer()   ? vccmPaletteRgb(layer)
                     : m_colour.isByBlock() ? vccmPaletteRgb(7)
                                            : m_colour.rgb();
    QPalette colours = m_ui->swatch->palette();
    colours.setColor(QPalette::Window, QColor(rgb));
    m_ui->swatch->setPalette(colours);
}

namespace {

bool runColorDialog(VcCmColor& colour, bool allowByLayer, bool allowTrueColor, int layerColour)
{
    ensureApplication();
    ColorDialog dialog(colour, {allowByLayer, allowTrueColor, layerColour}, mainWindow());
    if (runModal(dialog) != QDialog::Accepted)
        return false;
    colour = dialog.colour();
    return true;
}

}

}  // namespace vk::ui

bool vcedSetColorDialog(int& colour, bool allowByLayer, int currentLayerColour)
{
    const bool isValid = colour >= 0 && colour <= vk::ui::kByLayer;
    VcCmColor chosen = VcCmColor::fromIndex(std::int16_t(isValid ? colour : int(VcCmColor::kAciForeground)));
    if (!vk::ui::runColorDialog(chosen, allowByLayer, false, currentLayerColour))
        return false;
    colour = chosen.colorIndex();
    return true;
}

bool vcedSetColorDialog(VcCmColor& colour, bool allowByLayer, int currentLayerColour)
{
    return vk::ui::runColorDialog(colour, allowByLayer, true, currentLayerColour);
}

bool vcedSetColor(int* colour, bool allowByLayer, int currentLayerColour)
{
    return colour && vcedSetColorDialog(*colour, allowByLayer, currentLayerColour);
}
