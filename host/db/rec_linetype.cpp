#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/field_visitor.h"
#include "sdk/vcdb_records.h"

VCDB_DEFINE(VcDbLinetypeTableRecord, VcDbSymbolTableRecord, "LTYPE")

wchar_t* VcDbLinetypeTableRecord::asciiDescription() const { return heapStringFromUtf8(m_description); }

Vcad::ErrorStatus VcDbLinetypeTableRecord::setAsciiDescription(const wchar_t* text)
{
    if (!text)
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_description = wideToUtf8(text);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbLinetypeTableRecord::setPatternLength(double length)
{
    if (!(length >= 0))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_patternLength = length;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbLinetypeTableRecord::setNumDashes(int count)
{
    if (count < 0 || count == 1 || count > 12)
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_dashes.resize(std::size_t(count));
    return Vcad::eOk;
}

double VcDbLinetypeTableRecord::dashLengthAt(int index) const
{
    return index >= 0 && index < numDashes() ? m_dashes[std::size_t(index)].length : 0;
}

Vcad::ErrorStatus VcDbLinetypeTableRecord::setDashLengthAt(int index, double length)
{
    if (index < 0 || index >= numDashes())
        return Vcad::eInvalidIndex;
    if (!std::isfinite(length))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_dashes[std::size_t(index)].length = length;
    return Vcad::eOk;
}

void VcDbLinetypeTableRecord::setPattern(std::string descriptionUtf8, std::vector<Dash> dashes)
{
    assertWriteEnabled();
    m_description = std::move(descriptionUtf8);
    m_dashes = std::move(dashes);
    m_patternLength = 0;
    for (const Dash& dash : m_dashes)
        m_patternLength += std::abs(dash.length);
}

void VcDbLinetypeTableRecord::fields(FieldVisitor& v)
{
    VcDbSymbolTableRecord::fields(v);
    v.subclass("AcDbLinetypeTableRecord");
    nameAndFlags(v);
    v.text(3, m_description);
    v.number(72, m_alignment);
    v.count(73, m_dashes.size());
    v.real(40, m_patternLength);
    v.repeated(49, m_dashes, [&](Dash& dash) { dashFields(v, dash); });
}

void VcDbLinetypeTableRecord::dashFields(FieldVisitor& v, Dash& dash)
{
    v.real(49, dash.length);
    if (!v.isReading() && !v.atLeast(DxfVersion::R13))
        return;
    v.number(74, dash.flags);
    if (!dash.hasShape())
        return;
    v.number(75, dash.shapeNumber);
    v.ref(340, RefKind::HardPointer, dash.style);
    v.real(46, dash.scale);
    v.angle(50, dash.rotation);
    v.real(44, dash.offset.x);
    v.real(45, dash.offset.y);
    if (dash.flags & kText)
        v.text(9, dash.text);
}
