// Texts of one line. Position and alignment point are in the text's own coordinates, as in a file.
#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/ent_util.h"
#include "host/db/kept_extents.h"
#include "host/db/text_geometry.h"
#include "host/geom/arbitrary_axis.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_text.h"

VCDB_DEFINE(VcDbText, VcDbEntity, "TEXT")

using vk::geom::fromWorld;
using vk::geom::toWorld;

static constexpr double kSteepest = 85 * kPi / 180;

VcDbText::VcDbText(const VcGePoint3d& position, const wchar_t* text, double height, double rotation)
    : m_position(position), m_text(wideToUtf8(text ? text : L"")), m_height(height), m_rotation(rotation)
{
}

// Sets a member and brings the position in line.
template <class T>
Vcad::ErrorStatus VcDbText::change(T& member, const T& value)
{
    assertWriteEnabled();
    member = value;
    align();
    return Vcad::eOk;
}

// Place

VcGePoint3d VcDbText::position() const { return toWorld(m_position, normal()); }
VcGePoint3d VcDbText::alignmentPoint() const { return toWorld(m_alignment, normal()); }

Vcad::ErrorStatus VcDbText::setPosition(const VcGePoint3d& p)
{
    return isFinite(p) ? change(m_position, fromWorld(p, normal())) : Vcad::eOutOfRange;
}

Vcad::ErrorStatus VcDbText::setAlignmentPoint(const VcGePoint3d& p)
{
    return isFinite(p) ? change(m_alignment, fromWorld(p, normal())) : Vcad::eOutOfRange;
}

Vcad::ErrorStatus VcDbText::setHorizontalMode(VcDb::TextHorzMode mode)
{
    return mode >= 0 && mode <= 5 ? change(m_horizontal, std::int8_t(mode)) : Vcad::eOutOfRange;
}

Vcad::ErrorStatus VcDbText::setVerticalMode(VcDb::TextVertMode mode)
{
    return mode >= 0 && mode <= 3 ? change(m_vertical, std::int8_t(mode)) : Vcad::eOutOfRange;
}

Vcad::ErrorStatus VcDbText::adjustAlignment(const VcDbDatabase*)
{
    if (isDefaultAlignment())
        return Vcad::eNotApplicable;
    assertWriteEnabled();
    align();
    return Vcad::eOk;
}

void VcDbText::align()
{
    if (isDefaultAlignment())
        return;
    const vktext::TextStyleSpec style = textStyleSpec(*this);
    const VcGeVector3d across = m_alignment - m_position;
    const double distance = std::hypot(across.x, across.y);
    switch (horizontalMode()) {
    case VcDb::kTextAlign:
    case VcDb::kTextFit:
        if (!isPositive(distance))
            return;
        m_rotation = turnOf(std::atan2(across.y, across.x));
        if (horizontalMode() == VcDb::kTextAlign)
            m_height = vktext::alignedHeight(style, m_height, drawnText(), distance);
        else
            m_widthFactor = vktext::fittedWidthFactor(style, m_height, drawnText(), distance);
        return;
    default:
        break;
    }
    const VcGeVector2d offset = vktext::justificationOffset(
        style, m_height, drawnText(), vktext::HorizontalMode(m_horizontal), vktext::VerticalMode(m_vertical));
    const double c = std::cos(m_rotation), s = std::sin(m_rotation);
    m_position = m_alignment - VcGeVector3d(offset.x * c - offset.y * s, offset.x * s + offset.y * c, 0);
}

void VcDbText::fieldsChanged()
{
    m_wide.drop();
    align();
}

// Looks

wchar_t* VcDbText::textString() const { return heapStringFromUtf8(m_text); }

Vcad::ErrorStatus VcDbText::setTextString(const wchar_t* text)
{
    return text ? setTextUtf8(wideToUtf8(text)) : Vcad::eInvalidInput;
}

Vcad::ErrorStatus VcDbText::setTextUtf8(std::string text)
{
    m_wide.drop();
    return change(m_text, text);
}

VcDbObjectId VcDbText::textStyle() const
{
    const DatabaseCore* db = DatabaseCore::of(m_id);
    return m_style.isNull() && db ? db->findRecord(NameTable::TextStyle, "Standard") : m_style;
}

Vcad::ErrorStatus VcDbText::setTextStyle(VcDbObjectId style)
{
    return mayReferTo(*this, style, VcDbTextStyleTableRecord::desc()) ? change(m_style, style) : Vcad::eInvalidInput;
}

Vcad::ErrorStatus VcDbText::setHeight(double h) { return isPositive(h) ? change(m_height, h) : Vcad::eOutOfRange; }
Vcad::ErrorStatus VcDbText::setRotation(double a) { return isFinite(a) ? change(m_rotation, a) : Vcad::eOutOfRange; }
Vcad::ErrorStatus VcDbText::setWidthFactor(double f)
{
    return isPositive(f) ? change(m_widthFactor, f) : Vcad::eOutOfRange;
}

Vcad::ErrorStatus VcDbText::setOblique(double angle)
{
    return std::fabs(angle) <= kSteepest + 1e-9 ? change(m_oblique, angle) : Vcad::eOutOfRange;
}

Vcad::ErrorStatus VcDbText::mirrorInX(bool on)
{
    return change(m_generation, std::int16_t(on ? m_generation | 2 : m_generation & ~2));
}

Vcad::ErrorStatus VcDbText::mirrorInY(bool on)
{
    return change(m_generation, std::int16_t(on ? m_generation | 4 : m_generation & ~4));
}

Vcad::ErrorStatus VcDbText::setThickness(double t) { return setThicknessOf(*this, m_extrusion, t); }

Vcad::ErrorStatus VcDbText::setNormal(const VcGeVector3d& n)
{
    const VcGePoint3d at = position(), aligned = alignmentPoint();
    const Vcad::ErrorStatus status = setNormalOf(*this, m_extrusion, n);
    if (!status) {
        m_position = fromWorld(at, normal());
        m_alignment = fromWorld(aligned, normal());
    }
    return status;
}

// Geometry

namespace {

// The frame of a text's letters: along the line for one width of 1, and up for one height, slanted.
struct LetterFrame {
    VcGeVector2d along, up;
};

struct LetterLooks {
    double rotation, height, widthFactor, oblique;
    double signX, signY;
};

LetterFrame letterFrame(const LetterLooks& t)
{
    const VcGeVector2d u(std::cos(t.rotation), std::sin(t.rotation));
    return {u * (t.signX * t.widthFactor * t.height),
            u * (t.signX * std::tan(t.oblique) * t.height) + u.perpVector() * (t.signY * t.height)};
}

LetterLooks looksOf(const LetterFrame& f, double signX, double signY)
{
    const VcGeVector2d u = f.along * signX / f.along.length();
    const double height = signY * f.up.dotProduct(u.perpVector());
    return {u.angle(), height, f.along.length() / height, std::atan(signX * f.up.dotProduct(u) / height), signX, signY};
}

}

Vcad::ErrorStatus VcDbText::transformBy(const VcGeMatrix3d& m)
{
    const auto move = planeMove(m, normal());
    if (!move)
        return Vcad::eInvalidInput;
    if (!move->canMove(m_extrusion))
        return Vcad::eCannotScaleNonUniformly;
    LetterLooks looks{
        m_rotation, m_height, m_widthFactor, m_oblique, isMirroredInX() ? -1.0 : 1.0, isMirroredInY() ? -1.0 : 1.0};
    if (move->even) {
        const double rotation = move->angle(m_rotation) + (move->mirrored ? kPi : 0);
        looks.rotation = rotation == m_rotation ? rotation : turnOf(rotation);
        looks.height *= move->scale;
    } else {
        const LetterFrame frame = letterFrame(looks);
        const VcGePoint2d origin = (*move)(VcGePoint2d(), 0);
        const auto image = [&](const VcGeVector2d& v) { return (*move)(VcGePoint2d(v.x, v.y), 0) - origin; };
        looks =
            looksOf({image(frame.along), image(frame.up)}, move->mirrored ? -looks.signX : looks.signX, looks.signY);
        looks.rotation = turnOf(looks.rotation);
    }
    if (!isPositive(looks.height) || !isPositive(looks.widthFactor) || std::fabs(looks.oblique) > kSteepest + 1e-9)
        return Vcad::eCannotScaleNonUniformly;

    assertWriteEnabled();
    m_position = (*move)(m_position);
    m_alignment = isDefaultAlignment() && m_alignment == VcGePoint3d() ? m_alignment : (*move)(m_alignment);
    m_rotation = looks.rotation;
    m_height = looks.height;
    m_widthFactor = looks.widthFactor;
    m_oblique = looks.oblique;
    if (move->mirrored)
        m_generation ^= 2;
    move->move(m_extrusion);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbText::getGeomExtents(VcDbExtents& extents) const
{
    return keptExtents(m_id, extents, [this] {
        VcDbExtents drawn;
        const vktext::LineLooks looks = lineLooks(*this, m_style);
        const vktext::Box box = vktext::lineBox(looks, m_height, drawnText());
        if (box.width() <= 0 && box.height() <= 0)
            return drawn;
        const VcGePoint3d base = ownDrawnPosition(*this, drawnText(), looks);
        const VcGeVector3d n = normal();
        const double c = std::cos(m_rotation), s = std::sin(m_rotation);
        for (const double x : {box.left, box.right})
            for (const double y : {box.bottom, box.top})
                addExtruded(drawn, toWorld(base + VcGeVector3d(x * c - y * s, x * s + y * c, 0), n), m_extrusion);
        return drawn;
    });
}

// Groups

void VcDbText::textFields(FieldVisitor& v)
{
    if (v.isReading())
        m_wide.drop();
    VcDbEntity::fields(v);
    v.subclass("AcDbText");
    m_extrusion.thicknessField(v);
    v.point(10, m_position);
    v.real(40, m_height);
    v.text(1, m_text);
    v.optionalAngle(50, m_rotation, 0.0);
    v.optional(41, m_widthFactor, 1.0);
    v.optionalAngle(51, m_oblique, 0.0);
    v.optionalName(7, NameTable::TextStyle, m_style, "Standard");
    v.optionalNumber<std::int16_t>(71, m_generation, 0);
    v.optionalNumber<std::int8_t>(72, m_horizontal, 0);
    // A justified text always says its point, be it the origin.
    const VcGePoint3d never(NAN, NAN, NAN);
    if (v.purpose() == FieldVisitor::Purpose::ReadFile)
        m_alignment = never;
    v.optionalPoint(11, m_alignment, v.isWriting() && !isDefaultAlignment() ? never : VcGePoint3d());
    m_extrusion.normalField(v);
}

// A file that leaves out the point of a justified text must not make it jump to the origin when it is changed.
void VcDbText::verticalField(FieldVisitor& v, int code)
{
    v.optionalNumber<std::int8_t>(code, m_vertical, 0);
    if (!isFinite(m_alignment))
        m_alignment = isDefaultAlignment() ? VcGePoint3d() : m_position;
}

void VcDbText::fields(FieldVisitor& v)
{
    textFields(v);
    v.subclass("AcDbText");
    verticalField(v, 73);
}
