// SVG, written here: the generator of the painting library does not clip.
#include "host/base/files.h"
#include "host/render/page.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <iterator>
#include <unordered_map>

namespace vk::render {

namespace {

std::string base64(std::string_view bytes)
{
    static constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t v = 0;
        for (std::size_t k = 0; k < 3; ++k)
            v = v << 8 | (i + k < bytes.size() ? std::uint8_t(bytes[i + k]) : 0);
        for (std::size_t k = 0; k < 4; ++k)
            text += i + k <= bytes.size() ? kDigits[v >> (18 - 6 * k) & 63] : '=';
    }
    return text;
}

const char* imageType(std::string_view bytes)
{
    if (bytes.starts_with("\x89PNG"))
        return "image/png";
    if (bytes.starts_with("\xff\xd8"))
        return "image/jpeg";
    if (bytes.starts_with("GIF8"))
        return "image/gif";
    return nullptr;
}

class SvgPage : public Page, private Canvas {
public:
    explicit SvgPage(const PageSpec& spec) : m_spec(spec)
    {
        put("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" "
            "xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\"{0}\" height=\"{1}\" viewBox=\"0 0 {0} {1}\">\n",
            spec.width, spec.height);
        if (spec.background >> 24)
            put("<rect width=\"100%\" height=\"100%\" {}/>\n", paint("fill", spec.background));
        put("<g fill=\"none\" stroke-linecap=\"round\" stroke-linejoin=\"round\">\n");
    }

    Canvas& canvas() override { return *this; }

    // Neighbours drawn with one pen share a path.
    void stroke(std::span<const Point2> points, bool closed, const Pen& pen) override
    {
        constexpr std::size_t kLongest = 60000;
        if (m_pathSize > kLongest || !(pen == m_pen))
            flush();
        if (m_pathSize == 0) {
            m_pen = pen;
            put("<path {} stroke-width=\"{}\" d=\"", paint("stroke", pen.argb), number(pen.width));
        }
        m_pathSize += path(points, closed);
    }

    void fill(const Rings& rings, bool nonZero, std::uint32_t argb) override
    {
        flush();
        put("<path {}{} d=\"", paint("fill", argb), nonZero ? "" : " fill-rule=\"evenodd\"");
        pathOf(rings);
        put("\"/>\n");
    }

    void fillGradient(const Rings& rings, const Gradient& g) override
    {
        flush();
        const int id = ++m_ids;
        if (g.radial)
            put("<radialGradient id=\"g{}\" gradientUnits=\"userSpaceOnUse\" cx=\"{}\" cy=\"{}\" r=\"{}\" fx=\"{}\" "
                "fy=\"{}\">",
                id, number(g.from.x), number(g.from.y), number((g.to - g.from).length()), number(g.focus.x),
                number(g.focus.y));
        else
            put("<linearGradient id=\"g{}\" gradientUnits=\"userSpaceOnUse\" x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\">",
                id, number(g.from.x), number(g.from.y), number(g.to.x), number(g.to.y));
        for (const auto& [at, argb] : g.stops)
            put("<stop offset=\"{}\" {}/>", number(at), paint("stop", argb, "-color"));
        m_text += g.radial ? "</radialGradient>" : "</linearGradient>";
        put("<path fill=\"url(#g{})\" fill-rule=\"evenodd\" d=\"", id);
        pathOf(rings);
        put("\"/>\n");
    }

    // Where the page is transparent a mask can only be white.
    void erase(const Rings& rings) override
    {
        fill(rings, false, m_spec.background >> 24 ? m_spec.background : 0xffffffff);
    }

    bool image(const std::string& file, Point2 corner, VcGeVector2d width, VcGeVector2d height, const Rings& outline,
               const ImageAdjustment& adjustment) override
    {
        const auto bytes = readWholeFile(file);
        const char* type = bytes ? imageType(*bytes) : nullptr;
        if (!type)
            return false;
        pushClip(outline, false);
        const Point2 top = corner + height;
        put("<image width=\"1\" height=\"1\" preserveAspectRatio=\"none\" opacity=\"{}\" transform=\"matrix({} {} {} "
            "{} {} {})\" "
            "xlink:href=\"data:{};base64,{}\"/>\n",
            number(1 - adjustment.fade / 100.0), number(width.x), number(width.y), number(-height.x), number(-height.y),
            number(top.x), number(top.y), type, base64(*bytes));
        popClip();
        return true;
    }

    void pushClip(const Rings& rings, bool inverted) override
    {
        flush();
        const int id = ++m_ids;
        put("<clipPath id=\"c{}\"><path clip-rule=\"evenodd\" d=\"", id);
        if (inverted)
            put("M0 0H{}V{}H0Z", m_spec.width, m_spec.height);
        pathOf(rings);
        put("\"/></clipPath><g clip-path=\"url(#c{})\">\n", id);
    }

    void popClip() override
    {
        flush();
        put("</g>\n");
    }

    bool finish(std::string& bytes, std::string&) override
    {
        flush();
        put("</g>\n</svg>\n");
        bytes = std::move(m_text);
        return true;
    }

private:
    template <class... Args>
    void put(fmt::format_string<Args...> format, Args&&... args)
    {
        fmt::format_to(std::back_inserter(m_text), format, std::forward<Args>(args)...);
    }

    void flush()
    {
        if (m_pathSize > 0)
            put("\"/>\n");
        m_pathSize = 0;
    }

    // A hundredth of a pixel is as fine as anything is drawn.
    static std::string number(double v)
    {
        std::string text = fmt::format("{:.2f}", v);
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
            text.pop_back();
        return text == "-0" ? "0" : text;
    }

    static std::string paint(const char* what, std::uint32_t argb, const char* ending = "")
    {
        std::string text = fmt::format("{}{}=\"#{:06x}\"", what, ending, argb & 0xffffff);
        if (argb >> 24 != 0xff)
            text += fmt::format(" {}-opacity=\"{:.3f}\"", what, (argb >> 24) / 255.0);
        return text;
    }

    std::size_t path(std::span<const Point2> points, bool closed)
    {
        const std::size_t before = m_text.size();
        for (std::size_t i = 0; i < points.size(); ++i) {
            m_text += i == 0 ? "M" : i == 1 ? "L" : " ";
            m_text += number(points[i].x);
            m_text += ' ';
            m_text += number(points[i].y);
        }
        if (closed)
            m_text += 'Z';
        return m_text.size() - before;
    }

    void pathOf(const Rings& rings)
    {
        rings.forEach([&](std::span<const Point2> ring) { path(ring, true); });
    }

    const PageSpec m_spec;
    std::string m_text;
    std::size_t m_pathSize = 0;
    Pen m_pen;
    int m_ids = 0;
};

}

std::unique_ptr<Page> makeSvgPage(const PageSpec& spec) { return std::make_unique<SvgPage>(spec); }

}  // namespace vk::render
