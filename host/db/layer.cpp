#include "host/db/database.h"
#include "host/db/ent_util.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_tables.h"

#include "host/base/unicode.h"

VCDB_DEFINE(VcDbRegAppTableRecord, VcDbSymbolTableRecord, "APPID")
VCDB_DEFINE(VcDbLayerTableRecord, VcDbSymbolTableRecord, "LAYER")

void VcDbRegAppTableRecord::fields(FieldVisitor& v)
{
    VcDbSymbolTableRecord::fields(v);
    v.subclass("AcDbRegAppTableRecord");
    nameAndFlags(v);
}

namespace {

constexpr std::int16_t kFrozen = 1, kFrozenInNew = 2, kLocked = 4;

std::int16_t withBit(std::int16_t flags, std::int16_t bit, bool on)
{
    return std::int16_t(on ? flags | bit : flags & ~bit);
}

}

Vcad::ErrorStatus VcDbLayerTableRecord::setIsFrozen(bool frozen)
{
    const DatabaseCore* db = DatabaseCore::of(m_id);
    if (frozen && db && db->face().clayer() == m_id)
        return Vcad::eNotApplicable;
    assertWriteEnabled();
    m_flags = withBit(m_flags, kFrozen, frozen);
    return Vcad::eOk;
}

void VcDbLayerTableRecord::setVPDFLT(bool frozen)
{
    assertWriteEnabled();
    m_flags = withBit(m_flags, kFrozenInNew, frozen);
}

void VcDbLayerTableRecord::setIsLocked(bool locked)
{
    assertWriteEnabled();
    m_flags = withBit(m_flags, kLocked, locked);
}

void VcDbLayerTableRecord::setIsOff(bool off)
{
    assertWriteEnabled();
    m_off = off;
}

Vcad::ErrorStatus VcDbLayerTableRecord::setIsPlottable(bool plottable)
{
    assertWriteEnabled();
    m_plottable = plottable;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbLayerTableRecord::setColor(const VcCmColor& color)
{
    if (color.colorIndex() < 1 || color.colorIndex() > 255)
        return Vcad::eInvalidIndex;
    assertWriteEnabled();
    m_color = color;
    m_colorBook.clear();
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbLayerTableRecord::setLineWeight(VcDb::LineWeight weight)
{
    if (weight < VcDb::kLnWtByLwDefault || weight > VcDb::kLnWt211)
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_lineWeight = weight;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbLayerTableRecord::setLinetypeObjectId(VcDbObjectId linetype)
{
    if (!mayReferTo(*this, linetype, VcDbLinetypeTableRecord::desc()))
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_linetype = linetype;
    return Vcad::eOk;
}

// A layer that is off has a negative colour.
void VcDbLayerTableRecord::fields(FieldVisitor& v)
{
    VcDbSymbolTableRecord::fields(v);
    v.subclass("AcDbLayerTableRecord");
    nameAndFlags(v);

    std::int16_t index = std::int16_t(m_off ? -m_color.colorIndex() : m_color.colorIndex());
    const std::int16_t before = index;
    v.number(62, index);
    if (v.isReading() && index != before) {
        m_off = index < 0;
        const int positive = std::abs(int(index));
        m_color = VcCmColor::fromIndex(std::int16_t(positive >= 1 && positive <= 255 ? positive : 7));
    }
    if (v.isReading() || (m_color.isByColor() && v.atLeast(DxfVersion::R2004))) {
        std::int64_t rgb = v.isReading() ? -1 : std::int64_t(m_color.rgb());
        v.optionalInteger(420, rgb, -1);
        if (v.isReading() && rgb >= 0)
            m_color.setTrueColorBeside(std::uint32_t(rgb));
    }
    if (v.isReading() || v.atLeast(DxfVersion::R2004))
        v.optionalText(430, m_colorBook, "");
    v.name(6, NameTable::Linetype, m_linetype);
    if (v.isReading() || v.atLeast(DxfVersion::R2000)) {
        v.optionalNumber(290, m_plottable, true);
        v.optionalNumber<std::int16_t>(370, m_lineWeight,
                                       std::int16_t(v.isFile() ? std::numeric_limits<std::int16_t>::min() : -3));
        v.optionalRef(390, RefKind::HardPointer, m_plotStyle);
    }
    if (v.isReading() || v.atLeast(DxfVersion::R2007)) {
        v.optionalRef(347, RefKind::HardPointer, m_material);
        v.optionalRef(348, RefKind::HardPointer, m_visualStyle);
    }
}
