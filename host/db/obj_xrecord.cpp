#include "host/db/database.h"
#include "host/db/obj_tag_chain.h"
#include "sdk/vcdb_objects.h"

VCDB_DEFINE(VcDbXrecord, VcDbObject, "XRECORD")

VcDbXrecord::VcDbXrecord() : m_data(std::make_unique<TagList>()) {}
VcDbXrecord::~VcDbXrecord() = default;
VcDbXrecord::VcDbXrecord(const VcDbXrecord& o)
    : VcDbObject(o), m_data(std::make_unique<TagList>(*o.m_data)), m_mergeStyle(o.m_mergeStyle)
{
}

VcDbXrecord& VcDbXrecord::operator=(const VcDbXrecord& o)
{
    VcDbObject::operator=(o);
    *m_data = *o.m_data;
    m_mergeStyle = o.m_mergeStyle;
    return *this;
}

static bool isXrecordCode(int code) { return code >= 1 && code <= 369 && code != 5 && code != 100 && code != 105; }

Vcad::ErrorStatus VcDbXrecord::setFromRbChain(const resbuf& chain, VcDbDatabase* database)
{
    for (const resbuf* node = &chain; node; node = node->rbnext)
        if (!isXrecordCode(node->restype))
            return Vcad::eInvalidInput;
    const DatabaseCore* db = database ? &database->core() : DatabaseCore::of(m_id);
    TagList data;
    if (!chainToTags(&chain, db, data))
        return Vcad::eInvalidInput;
    setData(std::move(data));
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbXrecord::rbChain(resbuf** chain, VcDbDatabase* database) const
{
    if (!chain)
        return Vcad::eInvalidInput;
    const DatabaseCore* db = database ? &database->core() : DatabaseCore::of(m_id);
    *chain = tagsToChain(*m_data, db).release();
    return Vcad::eOk;
}

void VcDbXrecord::setData(TagList data)
{
    assertWriteEnabled();
    *m_data = std::move(data);
}

Vcad::ErrorStatus VcDbXrecord::setMergeStyle(std::int16_t style)
{
    if (style < 0 || style > 5)
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_mergeStyle = style;
    return Vcad::eOk;
}

// A file of R14 begins with the data; a 280 in front of it is then part of it, and comes back in its place all the same.
void VcDbXrecord::fields(FieldVisitor& v)
{
    VcDbObject::fields(v);
    v.subclass("AcDbXrecord");
    if (v.isReading() ? v.peek() == 280 : v.atLeast(DxfVersion::R2000))
        v.number(280, m_mergeStyle);
    v.rest(*m_data);
}
