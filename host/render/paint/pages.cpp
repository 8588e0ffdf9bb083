// PNG and PDF pages: what this library is loaded for. No window system is needed.
#include "host/render/page.h"
#include "host/render/paint/qt_canvas.h"
#include "sdk/vkdefs.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QPageSize>
#include <QPdfWriter>

namespace vk::render {

namespace {

// Plug-ins that read image files are found by way of the application object. Dialogs replace it by one of their own.
void ensureApplication()
{
    static int argc = 1;
    static char name[] = "vekad";
    static char* argv[] = {name, nullptr};
    if (!QCoreApplication::instance())
        new QCoreApplication(argc, argv);
}

class PngPage : public Page {
public:
    explicit PngPage(const PageSpec& spec)
        : m_image(spec.width, spec.height, QImage::Format_ARGB32_Premultiplied),
          m_canvas(m_painter, spec.background, true)
    {
        if (m_image.isNull())
            return;
        m_image.fill(QColor::fromRgba(spec.background));
        m_painter.begin(&m_image);
        m_painter.setRenderHint(QPainter::Antialiasing);
    }

    Canvas& canvas() override { return m_canvas; }

    bool finish(std::string& bytes, std::string& error) override
    {
        m_painter.end();
        QByteArray data;
        QBuffer buffer(&data);
        buffer.open(QIODevice::WriteOnly);
        if (m_image.isNull() || !m_image.save(&buffer, "PNG")) {
            error = "there is not enough memory for a picture of this size";
            return false;
        }
        bytes.assign(data.constData(), std::size_t(data.size()));
        return true;
    }

private:
    QImage m_image;
    QPainter m_painter;
    QtCanvas m_canvas;
};

class PdfPage : public Page {
public:
    explicit PdfPage(const PageSpec& spec) : m_canvas(m_painter, spec.background, false)
    {
        constexpr double kPixelsPerInch = 96, kPointsPerInch = 72;
        constexpr int kDotsPerInch = 1200;
        m_buffer.open(QIODevice::WriteOnly);
        m_writer.setCreator("vekad");
        m_writer.setPageSize(QPageSize(QSizeF(spec.width, spec.height) * (kPointsPerInch / kPixelsPerInch),
                                       QPageSize::Point, QString(), QPageSize::ExactMatch));
        m_writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        m_writer.setResolution(kDotsPerInch);
        m_begun = m_painter.begin(&m_writer);
        m_painter.scale(kDotsPerInch / kPixelsPerInch, kDotsPerInch / kPixelsPerInch);
        if (qAlpha(spec.background))
            m_painter.fillRect(QRectF(0, 0, spec.width, spec.height), QColor::fromRgba(spec.background));
    }

    Canvas& canvas() override { return m_canvas; }

    bool finish(std::string& bytes, std::string& error) override
    {
        if (!m_begun || !m_painter.end()) {
            error = "the page could not be made";
            return false;
        }
        bytes.assign(m_buffer.data().constData(), std::size_t(m_buffer.data().size()));
        return true;
    }

private:
    QBuffer m_buffer;
    QPdfWriter m_writer{&m_buffer};
    QPainter m_painter;
    QtCanvas m_canvas;
    bool m_begun = false;
};

}

}  // namespace vk::render

extern "C" VK_SDK vk::render::Page* vekadMakePage(const vk::render::PageSpec& spec)
{
    using namespace vk::render;
    ensureApplication();
    if (spec.format == PictureFormat::Pdf)
        return new PdfPage(spec);
    return new PngPage(spec);
}
