// Texts of many lines. The location is in the world; the direction is a vector there or an angle in the text's own plane,
// whichever the file or the last caller gave.
#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/ent_util.h"
#include "host/db/kept_extents.h"
#include "host/db/text_geometry.h"
#include "host/geom/arbitrary_axis.h"
#include "host/text/mtext_plain.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_text.h"

VCDB_DEFINE(VcDbMText, VcDbEntity, "MTEXT")

template <class T>
Vcad::ErrorStatus VcDbMText::change(T& member, const T& value)
{
    assertWriteEnabled();
    member = value;
    layoutChanged();
    return Vcad::eOk;
}

// Place

Vcad::ErrorStatus VcDbMText::setLocation(const VcGePoint3d& p)
{
    return isFinite(p) ? change(m_location, p) : Vcad::eOutOfRange;
}

Vcad::ErrorStatus VcDbMText::setNormal(const VcGeVector3d& n)
{
    if (!isDirection(n))
        return Vcad::eOutOfRange;
    const double angle = rotation();
    assertWriteEnabled();
    m_normal = n.normal();
    return setRotation(angle);
}

double VcDbMText::ownAngle(const VcGeVector3d& direction) const
{
    const vk::geom::Frame frame = vk::geom::arbitraryFrame(m_normal);
    return turnOf(std::atan2(direction.dotProduct(frame.y), direction.dotProduct(frame.x)));
}

VcGeVector3d VcDbMText::direction() const
{
    if (m_direction.lengthSqrd() > 0)
        return m_direction.normal();
    const vk::geom::Frame frame = vk::geom::arbitraryFrame(m_normal);
    return m_rotation == 0 ? frame.x : frame.x * std::cos(m_rotation) + frame.y * std::sin(m_rotation);
}

Vcad::ErrorStatus VcDbMText::setDirection(const VcGeVector3d& direction)
{
    if (!isDirection(direction) || direction.isParallelTo(m_normal))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_rotation = 0;
    return change(m_direction, direction.orthoProject(m_normal).normal());
}

double VcDbMText::rotation() const { return m_direction.lengthSqrd() > 0 ? ownAngle(m_direction) : m_rotation; }

Vcad::ErrorStatus VcDbMText::setRotation(double rotation)
{
    if (!isFinite(rotation))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_direction = VcGeVector3d();
    return change(m_rotation, rotation);
}

// Looks

wchar_t* VcDbMText::contents() const { return heapStringFromUtf8(m_contents); }

Vcad::ErrorStatus VcDbMText::setContents(const wchar_t* contents)
{
    return contents ? setContentsUtf8(wideToUtf8(contents)) : Vcad::eInvalidInput;
}

Vcad::ErrorStatus VcDbMText::setContentsUtf8(std::string contents) { return change(m_contents, contents); }

VcDbObjectId VcDbMText::textStyle() const
{
    const DatabaseCore* db = DatabaseCore::of(m_id);
    return m_style.isNull() && db ? db->findRecord(NameTable::TextStyle, "Standard") : m_style;
}

Vcad::ErrorStatus VcDbMText::setTextStyle(VcDbObjectId style)
{
    return mayReferTo(*this, style, VcDbTextStyleTableRecord::desc()) ? change(m_style, style) : Vcad::eInvalidInput;
}

Vcad::ErrorStatus VcDbMText::setTextHeight(double h)
{
    return isPositive(h) ? change(m_textHeight, h) : Vcad::eOutOfRange;
}

Vcad::ErrorStatus VcDbMText::setAttachment(AttachmentPoint point)
{
    return point >= 1 && point <= 9 ? change(m_attachment, std::int8_t(point)) : Vcad::eOutOfRange;
}

Vcad::ErrorStatus VcDbMText::setFlowDirection(FlowDirection flow)
{
    return flow >= 1 && flow <= 5 ? change(m_flow, std::int8_t(flow)) : Vcad::eOutOfRange;
}

Vcad::ErrorStatus VcDbMText::setLineSpacingStyle(VcDb::LineSpacingStyle style)
{
    return style == VcDb::kAtLeast || style == VcDb::kExactly ? change(m_spacingStyle, std::int8_t(style))
                                                              : Vcad::eOutOfRange;
}

Vcad::ErrorStatus VcDbMText::setLineSpacingFactor(double factor)
{
    return factor >= 0.25 && factor <= 4 ? change(m_spacingFactor, factor) : Vcad::eOutOfRange;
}

Vcad::ErrorStatus VcDbMText::setWidth(double w)
{
    return w >= 0 && isFinite(w) ? change(m_width, w) : Vcad::eOutOfRange;
}
Vcad::ErrorStatus VcDbMText::setHeight(double h)
{
    return h >= 0 && isFinite(h) ? change(m_height, h) : Vcad::eOutOfRange;
}

// Columns

VcDbMText::ColumnType VcDbMText::columnType() const { return ColumnType(m_embedded.get().type); }
int VcDbMText::columnCount() const { return m_embedded.get().count; }
double VcDbMText::columnWidth() const { return m_embedded.get().columnWidth; }
double VcDbMText::columnGutterWidth() const { return m_embedded.get().gutter; }
bool VcDbMText::columnAutoHeight() const { return m_embedded.get().autoHeight != 0; }
bool VcDbMText::columnFlowReversed() const { return m_embedded.get().reversed != 0; }

double VcDbMText::columnHeight(int index) const
{
    const Embedded e = m_embedded.get();
    return index >= 0 && std::size_t(index) < e.heights.size() ? e.heights[std::size_t(index)] : m_height;
}

// Background

VcCmColor VcDbMText::backgroundFillColor() const
{
    const Background b = m_background.get();
    VcCmColor color = VcCmColor::fromIndex(std::int16_t(b.color));
    if (b.trueColor != 0)
        color.setTrueColor(std::uint32_t(b.trueColor) & 0xffffff);
    return color;
}

Vcad::ErrorStatus VcDbMText::setBackgroundFill(bool on)
{
    assertWriteEnabled();
    Background b = m_background.get();
    b.flags = on ? (b.flags | 1) & ~2 : b.flags & ~3;
    m_background.set(b);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbMText::setBackgroundFillColor(const VcCmColor& color)
{
    assertWriteEnabled();
    Background b = m_background.get();
    b.color = color.colorIndex();
    b.trueColor = color.isByColor() ? std::int32_t(color.rgb()) : 0;
    m_background.set(b);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbMText::setBackgroundScaleFactor(double factor)
{
    if (!(factor >= 1 && factor <= 5))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    Background b = m_background.get();
    b.scale = factor;
    m_background.set(b);
    return Vcad::eOk;
}

// Layout

vktext::MTextLayout layoutOf(const VcDbMText& text)
{
    vktext::MTextSpec spec;
    spec.contents = text.contentsUtf8();
    spec.style = textStyleSpec(text.textStyle(), DatabaseCore::of(text.objectId()));
    spec.height = text.textHeight();
    spec.width = text.width();
    spec.attachment = text.attachment();
    spec.exactSpacing = text.lineSpacingStyle() == VcDb::kExactly;
    spec.spacingFactor = text.lineSpacingFactor();
    // Automatic columns have no count: as many as a text of this height needs, in reason.
    constexpr int kMostColumns = 100;
    if (text.columnType() != VcDbMText::kNoColumns) {
        spec.columns.count = text.columnCount() > 0 ? std::min(text.columnCount(), kMostColumns) : kMostColumns;
        spec.columns.width = text.columnWidth();
        spec.columns.gutter = text.columnGutterWidth();
        const int listed =
            text.columnAutoHeight() || text.columnType() == VcDbMText::kStaticColumns ? 1 : spec.columns.count;
        for (int i = 0; i < listed; ++i)
            spec.columns.heights.push_back(text.columnHeight(i));
    }
    return vktext::layoutMText(spec);
}

VcDbMText::Actual VcDbMText::actual() const
{
    if (m_actualWidth < 0) {
        const vktext::MTextLayout layout = layoutOf(*this);
        m_actualWidth = layout.width;
        m_actualHeight = layout.height;
    }
    return {m_actualWidth, m_actualHeight};
}

double VcDbMText::actualWidth() const { return actual().width; }
double VcDbMText::actualHeight() const { return actual().height; }

// What the file repeats of the text follows the text.
void VcDbMText::layoutChanged()
{
    m_actualWidth = m_actualHeight = -1;
    if (m_fileWidth != 0 || m_fileHeight != 0) {
        m_fileWidth = actual().width;
        m_fileHeight = actual().height;
    }
    if (!m_embedded.isSet())
        return;
    m_embedded->xAxis = direction();
    m_embedded->location = m_location;
    m_embedded->height = m_height;
    m_embedded->extentsWidth = actual().width;
    m_embedded->extentsHeight = actual().height;
}

// Geometry

Vcad::ErrorStatus VcDbMText::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, m_normal);
    if (!move)
        return Vcad::eInvalidInput;
    if (!move->even)
        return Vcad::eCannotScaleNonUniformly;
    const double angle = rotation();
    assertWriteEnabled();
    m_location = m * m_location;
    // Letters are never mirrored: the text fills the mirrored place, turned over along or across its lines, whichever turns
    // them less.
    const bool turnsAlong = move->mirrored && std::cos(move->angle(angle) - angle) > 1e-9;
    const double turned = move->angle(angle) + (move->mirrored && !turnsAlong ? kPi : 0);
    if (move->mirrored) {
        const int column = (m_attachment - 1) % 3, row = (m_attachment - 1) / 3;
        m_attachment = std::int8_t(turnsAlong ? (2 - row) * 3 + column + 1 : row * 3 + (2 - column) + 1);
    }
    const bool asAngle = m_direction.lengthSqrd() == 0;
    m_normal = move->normal;
    if (asAngle) {
        m_rotation = turned == angle ? angle : turnOf(turned);
    } else if (turned != angle || move->normal != VcGeVector3d::zAxis()) {
        const vk::geom::Frame frame = vk::geom::arbitraryFrame(m_normal);
        m_direction = frame.x * std::cos(turned) + frame.y * std::sin(turned);
    }
    for (double* length : {&m_textHeight, &m_width, &m_height})
        *length *= move->scale;
    if (m_embedded.isSet()) {
        for (double* length : {&m_embedded->width, &m_embedded->columnWidth, &m_embedded->gutter})
            *length *= move->scale;
        for (double& height : m_embedded->heights)
            height *= move->scale;
    }
    layoutChanged();
    return Vcad::eOk;
}

static std::optional<vktext::Box> plainBoxOf(const VcDbMText& text, VcDbObjectId style)
{
    if (text.columnType() != VcDbMText::kNoColumns)
        return std::nullopt;
    return vktext::plainDrawnBox({text.contentsUtf8(), styleLooks(style, text), text.textHeight(), text.width(),
                                  text.attachment(), text.lineSpacingStyle() == VcDb::kExactly,
                                  text.lineSpacingFactor()});
}

vktext::Box drawnBoxOf(const VcDbMText& text)
{
    const auto plain = plainBoxOf(text, text.textStyle());
    return plain ? *plain : vktext::drawnBox(layoutOf(text));
}

Vcad::ErrorStatus VcDbMText::getGeomExtents(VcDbExtents& extents) const
{
    return keptExtents(m_id, extents, [this] {
        VcDbExtents drawn;
        const auto plain = plainBoxOf(*this, m_style);
        const vktext::Box box = plain ? *plain : vktext::drawnBox(layoutOf(*this));
        const VcGeVector3d along = direction(), up = m_normal.crossProduct(along);
        for (const double x : {box.left, box.right})
            for (const double y : {box.bottom, box.top})
                drawn.addPoint(m_location + along * x + up * y);
        return drawn;
    });
}

Vcad::ErrorStatus VcDbMText::explode(std::vector<VcDbEntity*>& pieces) const
{
    const vktext::MTextLayout layout = layoutOf(*this);
    const VcGeVector3d along = direction(), up = m_normal.crossProduct(along);
    const auto place = [&](double x, double y) { return m_location + along * x + up * y; };
    const auto paint = [&](VcDbEntity& piece, const vktext::TextColor& color) {
        piece.setPropertiesFrom(this);
        VcCmColor own = piece.color();
        if (color.kind == vktext::TextColor::Kind::Index)
            own = VcCmColor::fromIndex(std::int16_t(color.value));
        else if (color.kind == vktext::TextColor::Kind::True)
            own.setTrueColor(color.value);
        piece.setColor(own);
    };
    DatabaseCore* db = DatabaseCore::of(m_id);
    for (const vktext::MTextFragment& fragment : layout.fragments) {
        auto line = std::make_unique<VcDbText>();
        vktext::TextStyleSpec style = vktext::fragmentStyle(layout, fragment);
        const std::string text = vktext::fragmentText(fragment);
        if (db)
            line->setTextStyle(styleWithFont(*db, style, m_style));
        line->setNormal(m_normal);
        line->setPosition(place(fragment.x, fragment.y));
        line->setRotation(rotation());
        line->setHeight(fragment.height);
        // Texts of one line have no tracking: their width makes up for it.
        const bool tracked = fragment.tracking != 1;
        line->setWidthFactor(tracked ? vktext::fittedWidthFactor(style, fragment.height, text, fragment.width)
                                     : fragment.widthFactor);
        line->setOblique(fragment.oblique);
        line->setTextUtf8(text);
        paint(*line, fragment.color);
        pieces.push_back(line.release());
    }
    for (const vktext::MTextRule& rule : layout.rules) {
        auto stroke = std::make_unique<VcDbLine>(place(rule.from.x, rule.from.y), place(rule.to.x, rule.to.y));
        paint(*stroke, rule.color);
        pieces.push_back(stroke.release());
    }
    return Vcad::eOk;
}

// Groups

void VcDbMText::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbMText");
    v.point(10, m_location);
    v.real(40, m_textHeight);
    v.real(41, m_width);
    if (v.isReading() || v.isChain() || v.atLeast(DxfVersion::R2007))
        v.optional(46, m_height, 0.0);
    v.number(71, m_attachment);
    v.optionalNumber<std::int8_t>(72, m_flow, 5);
    v.longText(3, 1, m_contents);
    v.optionalName(7, NameTable::TextStyle, m_style, "Standard");
    v.optionalVector(210, m_normal, VcGeVector3d::zAxis());
    directionFields(v);
    if (v.isReading() || v.isChain() || v.atLeast(DxfVersion::R2000)) {
        v.optionalNumber<std::int8_t>(73, m_spacingStyle, 1);
        v.optional(44, m_spacingFactor, 1.0);
    }
    if (v.isReading() || v.isChain() || v.atLeast(DxfVersion::R2004))
        backgroundFields(v);
    embeddedFields(v);
    if (v.isReading())
        m_actualWidth = m_actualHeight = -1;
}

// The vector, the actual size, the angle. On reading a chain the angle, where there is one, wins over the vector; in its
// own right it changes nothing while it says what the text has already.
void VcDbMText::directionFields(FieldVisitor& v)
{
    const VcGeVector3d byDefault = vk::geom::arbitraryXAxis(m_normal);
    const bool writesChain = v.purpose() == FieldVisitor::Purpose::WriteChain;
    VcGeVector3d vector = writesChain ? direction() : m_direction.lengthSqrd() > 0 ? m_direction : byDefault;
    double angle = writesChain ? rotation() : m_rotation;
    if (v.isReading()) {
        vector = VcGeVector3d(NAN, NAN, NAN);
        angle = NAN;
    }
    v.optionalVector(11, vector, byDefault);
    actualFields(v);
    v.optionalAngle(50, angle, 0.0);
    if (!v.isReading())
        return;
    if (v.isFile()) {
        m_direction = isDirection(vector) ? vector : VcGeVector3d();
        m_rotation = isFinite(angle) ? angle : 0.0;
        return;
    }
    if (isFinite(angle)) {
        if (angle != rotation())
            setRotation(angle);
    } else if (isDirection(vector) && vector != direction()) {
        setDirection(vector);
    }
}

void VcDbMText::actualFields(FieldVisitor& v)
{
    const bool ofFile = v.isFile();
    double width = ofFile ? m_fileWidth : v.isWriting() ? actual().width : 0.0;
    double height = ofFile ? m_fileHeight : v.isWriting() ? actual().height : 0.0;
    v.optional(42, width, 0.0);
    v.optional(43, height, 0.0);
    if (v.isReading() && ofFile) {
        m_fileWidth = width;
        m_fileHeight = height;
    }
}

void VcDbMText::backgroundFields(FieldVisitor& v)
{
    Background b = m_background.get();
    if (v.isWriting() && !m_background.isSet())
        return;
    v.optionalNumber<std::int32_t>(90, b.flags, 0);
    v.optionalNumber<std::int32_t>(63, b.color, 0);
    v.optionalNumber<std::int32_t>(421, b.trueColor, 0);
    v.optionalText(431, b.book, "");
    v.optional(45, b.scale, 1.5);
    v.optionalNumber<std::int32_t>(441, b.transparency, 0);
    if (v.isReading())
        m_background.set(b);
}

void VcDbMText::embeddedFields(FieldVisitor& v)
{
    const bool writes = m_embedded.isSet() && (v.isChain() || v.atLeast(DxfVersion::R2018));
    if (!v.optionalSubclass("Embedded Object", writes))
        return;
    Embedded& e = m_embedded.make();
    v.number(70, e.version);
    v.vector(10, e.xAxis);
    v.point(11, e.location);
    v.real(40, e.width);
    v.real(41, e.height);
    v.real(42, e.extentsWidth);
    v.real(43, e.extentsHeight);
    v.number(71, e.type);
    v.optionalNumber<std::int32_t>(72, e.count, 0);
    v.optional(44, e.columnWidth, 0.0);
    v.optional(45, e.gutter, 0.0);
    v.optionalNumber<std::int32_t>(73, e.autoHeight, 0);
    v.optionalNumber<std::int32_t>(74, e.reversed, 0);
    v.repeated(46, e.heights, [&](double& height) { v.real(46, height); });
}
