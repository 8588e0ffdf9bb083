#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/ent_util.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

VCDB_DEFINE(VcDbPlotSettings, VcDbObject, "PLOTSETTINGS")
VCDB_DEFINE(VcDbLayout, VcDbPlotSettings, "LAYOUT")

// Plot settings

wchar_t* VcDbPlotSettings::getPlotSettingsName() const { return heapStringFromUtf8(m_pageSetup); }
wchar_t* VcDbPlotSettings::getPlotCfgName() const { return heapStringFromUtf8(m_printer); }
wchar_t* VcDbPlotSettings::getCanonicalMediaName() const { return heapStringFromUtf8(m_paper); }
wchar_t* VcDbPlotSettings::getCurrentStyleSheet() const { return heapStringFromUtf8(m_styleSheet); }

Vcad::ErrorStatus VcDbPlotSettings::setPlotSettingsName(const wchar_t* name)
{
    if (!name)
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_pageSetup = wideToUtf8(name);
    return Vcad::eOk;
}

void VcDbPlotSettings::getPlotPaperSize(double& width, double& height) const
{
    width = m_paperWidth;
    height = m_paperHeight;
}

void VcDbPlotSettings::getPlotPaperMargins(double& left, double& bottom, double& right, double& top) const
{
    left = m_margins[0];
    bottom = m_margins[1];
    right = m_margins[2];
    top = m_margins[3];
}

void VcDbPlotSettings::getPlotWindowArea(VcGePoint2d& lowerLeft, VcGePoint2d& upperRight) const
{
    lowerLeft = m_windowLow;
    upperRight = m_windowHigh;
}

void VcDbPlotSettings::getCustomPrintScale(double& numerator, double& denominator) const
{
    numerator = m_numerator;
    denominator = m_denominator;
}

Vcad::ErrorStatus VcDbPlotSettings::setCustomPrintScale(double numerator, double denominator)
{
    if (!(numerator > 0) || !(denominator > 0) || !std::isfinite(numerator) || !std::isfinite(denominator))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_numerator = numerator;
    m_denominator = denominator;
    m_scaleFactor = numerator / denominator;
    m_plotFlags = std::int16_t(m_plotFlags & ~kStandardScale);
    return Vcad::eOk;
}

void VcDbPlotSettings::setPlotFlags(std::int16_t flags)
{
    assertWriteEnabled();
    m_plotFlags = flags;
}

void VcDbPlotSettings::setPaper(std::string paper, double width, double height, double sideMargin, double endMargin)
{
    assertWriteEnabled();
    m_paper = std::move(paper);
    m_paperWidth = width;
    m_paperHeight = height;
    m_margins[0] = m_margins[2] = sideMargin;
    m_margins[1] = m_margins[3] = endMargin;
}

Vcad::ErrorStatus VcDbPlotSettings::setPlotRotation(std::int16_t quarterTurns)
{
    if (quarterTurns < 0 || quarterTurns > 3)
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_rotation = quarterTurns;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbPlotSettings::setPlotType(PlotType type)
{
    if (type < kDisplay || type > kLayout)
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_plotType = type;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbPlotSettings::setPlotPaperUnits(PaperUnits units)
{
    if (units < kInches || units > kPixels)
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_paperUnits = units;
    return Vcad::eOk;
}

void VcDbPlotSettings::fields(FieldVisitor& v)
{
    VcDbObject::fields(v);
    v.subclass("AcDbPlotSettings");
    v.text(1, m_pageSetup);
    v.text(2, m_printer);
    v.text(4, m_paper);
    v.text(6, m_plotView);
    for (int side = 0; side < 4; ++side)
        v.real(40 + side, m_margins[side]);
    v.real(44, m_paperWidth);
    v.real(45, m_paperHeight);
    v.real(46, m_origin.x);
    v.real(47, m_origin.y);
    v.real(48, m_windowLow.x);
    v.real(49, m_windowLow.y);
    v.real(140, m_windowHigh.x);
    v.real(141, m_windowHigh.y);
    v.real(142, m_numerator);
    v.real(143, m_denominator);
    v.number(70, m_plotFlags);
    v.number(72, m_paperUnits);
    v.number(73, m_rotation);
    v.number(74, m_plotType);
    v.text(7, m_styleSheet);
    v.number(75, m_standardScale);
    if (v.isReading() || v.atLeast(DxfVersion::R2004))
        shadeFields(v);
    v.real(147, m_scaleFactor);
    v.real(148, m_imageOrigin.x);
    v.real(149, m_imageOrigin.y);
    if (v.isReading() || v.atLeast(DxfVersion::R2007))
        v.optionalRef(333, RefKind::HardPointer, m_shadePlot);
}

void VcDbPlotSettings::shadeFields(FieldVisitor& v)
{
    v.number(76, m_shadeMode);
    v.number(77, m_shadeResolution);
    v.number(78, m_shadeDpi);
}

// Layouts

Vcad::ErrorStatus VcDbLayout::setBlockTableRecordId(VcDbObjectId block)
{
    return setMember(*this, m_block, block, block.isNull() || mayReferTo(*this, block, VcDbBlockTableRecord::desc()));
}

wchar_t* VcDbLayout::getLayoutName() const { return heapStringFromUtf8(m_name); }

Vcad::ErrorStatus VcDbLayout::setLayoutName(const wchar_t* name)
{
    if (!name || !*name)
        return Vcad::eInvalidInput;
    const DatabaseCore* db = DatabaseCore::of(m_id);
    if (db && m_block == db->modelSpace() && !m_block.isNull())
        return Vcad::eNotApplicable;
    auto* dictionary = db ? db->liveAs<VcDbDictionary>(ownerId()) : nullptr;
    if (dictionary && dictionary->has(m_id) && !dictionary->setName(utf8ToWide(dictionary->nameOf(m_id)).c_str(), name))
        return Vcad::eDuplicateKey;
    setNameUtf8(wideToUtf8(name));
    return Vcad::eOk;
}

void VcDbLayout::setNameUtf8(std::string name)
{
    assertWriteEnabled();
    m_name = std::move(name);
}

Vcad::ErrorStatus VcDbLayout::setTabOrder(int order)
{
    if (order < 0 || order > 32767)
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_tabOrder = std::int16_t(order);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbLayout::getLimits(VcGePoint2d& minimum, VcGePoint2d& maximum) const
{
    minimum = m_limitsMin;
    maximum = m_limitsMax;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbLayout::setLimits(const VcGePoint2d& minimum, const VcGePoint2d& maximum)
{
    if (!isFinite(minimum) || !isFinite(maximum) || minimum.x > maximum.x || minimum.y > maximum.y)
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_limitsMin = minimum;
    m_limitsMax = maximum;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbLayout::getExtents(VcGePoint3d& minimum, VcGePoint3d& maximum) const
{
    minimum = m_extentsMin;
    maximum = m_extentsMax;
    return Vcad::eOk;
}

void VcDbLayout::setExtents(const VcGePoint3d& minimum, const VcGePoint3d& maximum)
{
    assertWriteEnabled();
    m_extentsMin = minimum;
    m_extentsMax = maximum;
}

void VcDbLayout::setInsertionBase(const VcGePoint3d& base)
{
    assertWriteEnabled();
    m_insertionBase = base;
}

void VcDbLayout::setLastActiveViewport(VcDbObjectId viewport)
{
    assertWriteEnabled();
    m_lastViewport = viewport;
}

void VcDbLayout::setLayoutFlags(std::int16_t flags)
{
    assertWriteEnabled();
    m_layoutFlags = flags;
}

void VcDbLayout::getUcs(VcGePoint3d& origin, VcGeVector3d& xAxis, VcGeVector3d& yAxis) const
{
    origin = m_ucsOrigin;
    xAxis = m_ucsX;
    yAxis = m_ucsY;
}

Vcad::ErrorStatus VcDbLayout::setUcs(const VcGePoint3d& origin, const VcGeVector3d& xAxis, const VcGeVector3d& yAxis)
{
    const VcGeVector3d x = xAxis.normal(), y = yAxis.normal();
    if (!isFinite(origin) || !(std::abs(x.dotProduct(y)) < 1e-6) || !(x.length() > 0.5) || !(y.length() > 0.5))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_ucsOrigin = origin;
    m_ucsX = x;
    m_ucsY = y;
    m_ucsName = {};
    m_orthoType = 0;
    return Vcad::eOk;
}

void VcDbPlotSettings::dropShadePlot()
{
    assertWriteEnabled();
    m_shadePlot = {};
}

void VcDbLayout::dropReferences()
{
    dropShadePlot();
    m_block = m_lastViewport = m_ucsName = m_baseUcs = {};
}

void VcDbLayout::setUcsName(VcDbObjectId ucs)
{
    assertWriteEnabled();
    m_ucsName = ucs;
}

void VcDbLayout::fields(FieldVisitor& v)
{
    VcDbPlotSettings::fields(v);
    v.subclass("AcDbLayout");
    v.text(1, m_name);
    v.number(70, m_layoutFlags);
    v.number(71, m_tabOrder);
    v.point2(10, m_limitsMin);
    v.point2(11, m_limitsMax);
    v.point(12, m_insertionBase);
    v.point(14, m_extentsMin);
    v.point(15, m_extentsMax);
    v.real(146, m_elevation);
    v.point(13, m_ucsOrigin);
    v.vector(16, m_ucsX);
    v.vector(17, m_ucsY);
    v.number(76, m_orthoType);
    v.ref(330, RefKind::SoftPointer, m_block);
    v.optionalRef(331, RefKind::SoftPointer, m_lastViewport);
    v.optionalRef(345, RefKind::HardPointer, m_ucsName);
    v.optionalRef(346, RefKind::HardPointer, m_baseUcs);
}
