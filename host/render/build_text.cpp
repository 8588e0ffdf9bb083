// Texts, attributes, texts of many lines.
#include "host/db/database.h"
#include "host/db/text_geometry.h"
#include "host/render/build_parts.h"
#include "host/text/font_library.h"
#include "sdk/vcdb_text.h"

#include <algorithm>

namespace vk::render {

using geom::Frame;

namespace {

// The ink of a letter in the line's own axes.
void include(vktext::Box& box, const vktext::GlyphMetrics& m, const vktext::PlacedGlyph& glyph)
{
    for (const double x : {m.left, m.right})
        for (const double y : {m.bottom, m.top}) {
            const double px = glyph.origin.x + glyph.xScale * x + glyph.slant * y,
                         py = glyph.origin.y + glyph.yScale * y;
            box = {std::min(box.left, px), std::min(box.bottom, py), std::max(box.right, px), std::max(box.top, py)};
        }
}

}

void ListBuilder::text(const vktext::TextStyleSpec& style, double height, std::string_view text,
                       const VcGePoint3d& origin, const VcGeVector3d& x, const VcGeVector3d& y, double tracking)
{
    const vktext::Font& font = vktext::FontLibrary::instance().font(style);
    vktext::PlacedLine line = vktext::placeLine(style, height, text);
    const auto place = [&](double px, double py) { return origin + x * px + y * py; };
    for (const auto& [from, to] : line.decorations)
        this->line(place(from.x * tracking, from.y), place(to.x * tracking, to.y), Item::Continuous);
    if (line.glyphs.empty())
        return;
    vktext::Box ink{1e300, 1e300, -1e300, -1e300};
    for (vktext::PlacedGlyph& glyph : line.glyphs) {
        glyph.origin.x *= tracking;
        include(ink, font.metrics(glyph.c), glyph);
    }
    for (const double px : {ink.left, ink.right})
        for (const double py : {ink.bottom, ink.top})
            m_list.bounds.add(place(px, py));
    m_list.texts.push_back(
        {&font, std::uint32_t(m_list.glyphs.size()), std::uint32_t(line.glyphs.size()), origin, x, y, height, ink});
    m_list.glyphs.insert(m_list.glyphs.end(), line.glyphs.begin(), line.glyphs.end());
    item(Item::Text, 0, m_list.texts.size() - 1);
}

namespace {

VcCmColor colourOf(const vktext::TextColor& colour, const VcCmColor& inherited)
{
    VcCmColor own = inherited;
    if (colour.kind == vktext::TextColor::Kind::Index)
        own = VcCmColor::fromIndex(std::int16_t(colour.value));
    else if (colour.kind == vktext::TextColor::Kind::True)
        own.setTrueColor(colour.value);
    return own;
}

}

void addMTextLayout(ListBuilder& b, const vktext::MTextLayout& layout, const VcGePoint3d& at, const VcGeVector3d& x,
                    const VcGeVector3d& y)
{
    const VcCmColor inherited = b.colour();
    const auto place = [&](double px, double py) { return at + x * px + y * py; };
    for (const vktext::MTextFragment& fragment : layout.fragments) {
        b.setColour(colourOf(fragment.color, inherited));
        b.text(vktext::fragmentStyle(layout, fragment), fragment.height, vktext::fragmentText(fragment),
               place(fragment.x, fragment.y), x, y, fragment.tracking);
    }
    for (const vktext::MTextRule& rule : layout.rules) {
        b.setColour(colourOf(rule.color, inherited));
        b.line(place(rule.from.x, rule.from.y), place(rule.to.x, rule.to.y), Item::Continuous);
    }
    b.setColour(inherited);
}

namespace {

void addTextSaying(ListBuilder& b, const VcDbText& text, const std::string& drawn)
{
    const Frame frame = geom::arbitraryFrame(text.normal());
    const double c = std::cos(text.rotation()), s = std::sin(text.rotation());
    b.text(textStyleSpec(text), text.height(), drawn, drawnPosition(text, drawn), frame.x * c + frame.y * s,
           frame.y * c - frame.x * s);
}

void buildText(const VcDbEntity& e, ListBuilder& b)
{
    const auto& text = static_cast<const VcDbText&>(e);
    addTextSaying(b, text, text.textUtf8());
}

// ATTMODE: 0 shows no attribute, 1 the visible ones, 2 all.
bool isShown(const VcDbTaggedText& text, const ListBuilder& b)
{
    const auto mode = b.db().header().integer("$ATTMODE", 1);
    return mode == 2 || (mode != 0 && !text.isInvisible());
}

void buildAttribute(const VcDbEntity& e, ListBuilder& b)
{
    const auto& attribute = static_cast<const VcDbAttribute&>(e);
    if (isShown(attribute, b))
        addTextSaying(b, attribute, attribute.textUtf8());
}

// In a block only constant ones are seen, with their value; outside each shows its tag.
void buildDefinition(const VcDbEntity& e, ListBuilder& b)
{
    const auto& definition = static_cast<const VcDbAttributeDefinition&>(e);
    if (!b.inBlock)
        addTextSaying(b, definition, definition.tagUtf8());
    else if (definition.isConstant() && isShown(definition, b))
        addTextSaying(b, definition, definition.textUtf8());
}

// A mask, or a field of colour, that reaches beyond the text on all sides.
void addBackground(ListBuilder& b, const VcDbMText& text, vktext::Box box, const VcGeVector3d& x, const VcGeVector3d& y)
{
    const double beyond = (text.backgroundScaleFactor() - 1) * text.textHeight();
    box = {box.left - beyond, box.bottom - beyond, box.right + beyond, box.top + beyond};
    const auto corner = [&](double px, double py) { return text.location() + x * px + y * py; };
    const std::uint32_t first = b.figureCount();
    b.polygon({corner(box.left, box.bottom), corner(box.right, box.bottom), corner(box.right, box.top),
               corner(box.left, box.top)});
    if (text.useBackgroundColorOn())
        return b.mask(first);
    b.setColour(text.backgroundFillColor());
    b.fill(first, FillRule::NonZero);
    b.setColour(b.props().color);
}

void buildMText(const VcDbEntity& e, ListBuilder& b)
{
    const auto& text = static_cast<const VcDbMText&>(e);
    const vktext::MTextLayout layout = layoutOf(text);
    const VcGeVector3d x = text.direction().normal(), y = text.normal().normal().crossProduct(x);
    if (text.backgroundFillOn())
        addBackground(b, text, layout.box, x, y);
    addMTextLayout(b, layout, text.location(), x, y);
}

constexpr BuildEntry kBuilders[] = {
    {&VcDbAttribute::desc, buildAttribute},
    {&VcDbAttributeDefinition::desc, buildDefinition},
    {&VcDbText::desc, buildText},
    {&VcDbMText::desc, buildMText},
};

}

std::span<const BuildEntry> textBuilders() { return kBuilders; }

}  // namespace vk::render
