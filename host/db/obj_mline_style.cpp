#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

VCDB_DEFINE(VcDbMlineStyle, VcDbObject, "MLINESTYLE")

wchar_t* VcDbMlineStyle::name() const { return heapStringFromUtf8(m_name); }
wchar_t* VcDbMlineStyle::description() const { return heapStringFromUtf8(m_description); }

Vcad::ErrorStatus VcDbMlineStyle::setName(const wchar_t* name)
{
    if (!name || !*name)
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_name = wideToUtf8(name);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbMlineStyle::setDescription(const wchar_t* text)
{
    if (!text)
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_description = wideToUtf8(text);
    return Vcad::eOk;
}

static bool isEndAngle(double radians)
{
    constexpr double kTenDegrees = 0.17453292519943295769, kPi = 3.14159265358979323846;
    return radians >= kTenDegrees - 1e-12 && radians <= kPi - kTenDegrees + 1e-12;
}

Vcad::ErrorStatus VcDbMlineStyle::setStartAngle(double radians)
{
    if (!isEndAngle(radians))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_startAngle = radians;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbMlineStyle::setEndAngle(double radians)
{
    if (!isEndAngle(radians))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_endAngle = radians;
    return Vcad::eOk;
}

void VcDbMlineStyle::setElements(std::vector<Element> elements)
{
    assertWriteEnabled();
    m_elements = std::move(elements);
}

// A palette index and, where it is none of the palette, the true colour right behind it: one further on is another's.
static void colorFields(FieldVisitor& v, VcCmColor& color)
{
    std::int16_t index = color.colorIndex();
    v.number(62, index);
    std::int64_t rgb = color.isByColor() && !v.isReading() ? std::int64_t(color.rgb()) : -1;
    if (v.isReading() ? v.peek() == 420 : v.atLeast(DxfVersion::R2004))
        v.optionalInteger(420, rgb, -1);
    if (!v.isReading())
        return;
    color = VcCmColor::fromIndex(index);
    if (rgb >= 0)
        color.setTrueColorBeside(std::uint32_t(rgb));
}

// Elements have "BYLAYER" and "BYBLOCK" in capitals, however the drawing's records spell them.
void VcDbMlineStyle::linetypeField(FieldVisitor& v, VcDbObjectId& linetype)
{
    const DatabaseCore* db = DatabaseCore::of(linetype);
    const auto* record = db ? db->objectAs<VcDbSymbolTableRecord>(linetype) : nullptr;
    const bool isLogical =
        record && (equalNoCase(record->nameUtf8(), "ByLayer") || equalNoCase(record->nameUtf8(), "ByBlock"));
    if (!v.isWriting() || !isLogical) {
        v.name(6, NameTable::Linetype, linetype);
        return;
    }
    std::string name = toUpper(record->nameUtf8());
    v.text(6, name);
}

void VcDbMlineStyle::fields(FieldVisitor& v)
{
    VcDbObject::fields(v);
    v.subclass("AcDbMlineStyle");
    v.text(2, m_name);
    v.number(70, m_flags);
    v.text(3, m_description);
    colorFields(v, m_fill);
    v.angle(51, m_startAngle);
    v.angle(52, m_endAngle);
    v.count(71, m_elements.size());
    v.repeated(49, m_elements, [&](Element& element) {
        v.real(49, element.offset);
        colorFields(v, element.color);
        linetypeField(v, element.linetype);
    });
}
