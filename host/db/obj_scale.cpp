#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/field_visitor.h"
#include "sdk/vcdb_objects.h"

VCDB_DEFINE(VcDbScale, VcDbObject, "SCALE")

wchar_t* VcDbScale::scaleName() const { return heapStringFromUtf8(m_name); }

Vcad::ErrorStatus VcDbScale::setScaleName(const wchar_t* name)
{
    if (!name || !*name)
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_name = wideToUtf8(name);
    return Vcad::eOk;
}

static bool isUnits(double units) { return units > 0 && std::isfinite(units); }

Vcad::ErrorStatus VcDbScale::setPaperUnits(double units)
{
    if (!isUnits(units))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_paperUnits = units;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbScale::setDrawingUnits(double units)
{
    if (!isUnits(units))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_drawingUnits = units;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbScale::setIsUnitScale(bool unit)
{
    assertWriteEnabled();
    m_unit = unit;
    return Vcad::eOk;
}

void VcDbScale::set(std::string nameUtf8, double paperUnits, double drawingUnits, bool unit)
{
    assertWriteEnabled();
    m_name = std::move(nameUtf8);
    m_paperUnits = paperUnits;
    m_drawingUnits = drawingUnits;
    m_unit = unit;
}

void VcDbScale::fields(FieldVisitor& v)
{
    VcDbObject::fields(v);
    v.subclass("AcDbScale");
    v.number(70, m_flags);
    v.text(300, m_name);
    v.real(140, m_paperUnits);
    v.real(141, m_drawingUnits);
    v.number(290, m_unit);
}
