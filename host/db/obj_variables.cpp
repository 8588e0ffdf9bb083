// Small objects that hold settings of the drawing, and definitions behind images.

#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/field_visitor.h"
#include "sdk/vcdb_objects.h"

VCDB_DEFINE(VcDbRasterImageDef, VcDbObject, "IMAGEDEF")
VCDB_DEFINE(VcDbRasterImageDefReactor, VcDbObject, "IMAGEDEF_REACTOR")
VCDB_DEFINE(VcDbRasterVariables, VcDbObject, "RASTERVARIABLES")
VCDB_DEFINE(VcDbWipeoutVariables, VcDbObject, "WIPEOUTVARIABLES")
VCDB_DEFINE(VcDbDictionaryVar, VcDbObject, "DICTIONARYVAR")
VCDB_DEFINE(VcDbPlaceHolder, VcDbObject, "ACDBPLACEHOLDER")

static void pair(FieldVisitor& v, int code, VcGeVector2d& value)
{
    VcGePoint2d point(value.x, value.y);
    v.point2(code, point);
    value = point.asVector();
}

wchar_t* VcDbRasterImageDef::sourceFileName() const { return heapStringFromUtf8(m_file); }

Vcad::ErrorStatus VcDbRasterImageDef::setSourceFileName(const wchar_t* file)
{
    if (!file)
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_file = wideToUtf8(file);
    return Vcad::eOk;
}

void VcDbRasterImageDef::setImage(const VcGeVector2d& pixels, const VcGeVector2d& pixelSize)
{
    assertWriteEnabled();
    m_size = pixels;
    m_pixelSize = pixelSize;
}

void VcDbRasterImageDef::fields(FieldVisitor& v)
{
    VcDbObject::fields(v);
    v.subclass("AcDbRasterImageDef");
    v.number(90, m_classVersion);
    v.text(1, m_file);
    pair(v, 10, m_size);
    pair(v, 11, m_pixelSize);
    v.number(280, m_loaded);
    v.number(281, m_units);
}

void VcDbRasterImageDefReactor::setImageId(VcDbObjectId image)
{
    assertWriteEnabled();
    m_image = image;
}

void VcDbRasterImageDefReactor::fields(FieldVisitor& v)
{
    VcDbObject::fields(v);
    v.subclass("AcDbRasterImageDefReactor");
    v.number(90, m_classVersion);
    v.ref(330, RefKind::SoftPointer, m_image);
}

Vcad::ErrorStatus VcDbRasterVariables::setImageFrame(std::int16_t frame)
{
    if (frame < 0 || frame > 2)
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_frame = frame;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbRasterVariables::setImageQuality(std::int16_t quality)
{
    if (quality < 0 || quality > 1)
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_quality = quality;
    return Vcad::eOk;
}

void VcDbRasterVariables::fields(FieldVisitor& v)
{
    VcDbObject::fields(v);
    v.subclass("AcDbRasterVariables");
    v.number(90, m_classVersion);
    v.number(70, m_frame);
    v.number(71, m_quality);
    v.number(72, m_units);
}

Vcad::ErrorStatus VcDbWipeoutVariables::setShowFrame(std::int16_t frame)
{
    if (frame < 0 || frame > 2)
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_frame = frame;
    return Vcad::eOk;
}

void VcDbWipeoutVariables::fields(FieldVisitor& v)
{
    VcDbObject::fields(v);
    v.subclass("AcDbWipeoutVariables");
    v.number(70, m_frame);
}

wchar_t* VcDbDictionaryVar::value() const { return heapStringFromUtf8(m_value); }

Vcad::ErrorStatus VcDbDictionaryVar::setValue(const wchar_t* value)
{
    if (!value)
        return Vcad::eInvalidInput;
    setValueUtf8(wideToUtf8(value));
    return Vcad::eOk;
}

void VcDbDictionaryVar::setValueUtf8(std::string value)
{
    assertWriteEnabled();
    m_value = std::move(value);
}

void VcDbDictionaryVar::fields(FieldVisitor& v)
{
    VcDbObject::fields(v);
    v.subclass("DictionaryVariables");
    v.number(280, m_schema);
    v.text(1, m_value);
}
