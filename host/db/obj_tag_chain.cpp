#include "host/db/obj_tag_chain.h"

#include "host/base/group_code.h"
#include "host/db/chain.h"
#include "host/db/database.h"

namespace {

void addReference(RbBuilder& chain, int code, std::uint64_t handle, const DatabaseCore* db)
{
    vds_name name = {0, 0};
    if (const VcDbObjectId id = db ? db->findHandle(handle) : VcDbObjectId(); !id.isNull())
        idToName(id, name);
    chain.addName(code, name);
}

std::string hexOf(std::uint64_t handle)
{
    char hex[17];
    VcDbHandle(handle).getIntoAsciiBuffer(hex);
    return hex;
}

void addHandle(RbBuilder& chain, const Tag& tag, const DatabaseCore* db)
{
    if (groupKind(tag.code) == GroupKind::Reference)
        addReference(chain, tag.code, std::uint64_t(tag.integer), db);
    else
        chain.addUtf8(tag.code, hexOf(std::uint64_t(tag.integer)));
}

void addTag(RbBuilder& chain, const Tag& tag, const DatabaseCore* db)
{
    switch (tag.form) {
    case Tag::Form::Real:
        return chain.addReal(tag.code, tag.real);
    case Tag::Form::Bytes:
        return chain.addBytes(tag.code, tag.view());
    case Tag::Form::Integer:
        return tag.isHandle ? addHandle(chain, tag, db) : chain.addInteger(tag.code, tag.integer);
    default:
        return chain.addUtf8(tag.code, tag.view());
    }
}

bool addReferenceNode(TagList& tags, const resbuf& node, const DatabaseCore* db)
{
    const vds_name& name = node.resval.rlname;
    if (name[0] == 0 && name[1] == 0) {
        tags.addHandle(node.restype, 0);
        return true;
    }
    VcDbObjectId id;
    if (!nameToId(name, id) || (db && DatabaseCore::of(id) != db))
        return false;
    tags.addHandle(node.restype, id.handle().value());
    return true;
}

bool addNode(TagList& tags, const resbuf& node, const DatabaseCore* db)
{
    const int code = node.restype;
    switch (groupKind(code)) {
    case GroupKind::None:
        return false;
    case GroupKind::Reference:
        return addReferenceNode(tags, node, db);
    case GroupKind::Handle:
        tags.addHandle(code, std::strtoull(rbUtf8(node).c_str(), nullptr, 16));
        return true;
    case GroupKind::Point:
        for (int axis = 0; axis < 3; ++axis)
            tags.addReal(code + axis * 10, node.resval.rpoint[axis]);
        return true;
    case GroupKind::Real:
        tags.addReal(code, rbReal(node));
        return true;
    case GroupKind::Binary:
        tags.addBytes(code, rbBytes(node));
        return true;
    case GroupKind::String:
        tags.addText(code, rbUtf8(node));
        return true;
    default:
        tags.addInteger(code, rbInteger(node));
        return true;
    }
}

}

bool PointJoiner::take(int code, double value)
{
    if (m_point && m_axis < 3 && code == m_point->restype + m_axis * 10) {
        m_point->resval.rpoint[m_axis++] = value;
        return true;
    }
    stop();
    if (groupKind(code) != GroupKind::Point)
        return false;
    m_point = &m_chain.add(code);
    setRbPoint(*m_point, value, 0, 0);
    m_axis = 1;
    return true;
}

RbPtr tagsToChain(const TagList& tags, const DatabaseCore* db)
{
    RbBuilder chain;
    PointJoiner points(chain);
    for (const Tag& tag : tags) {
        if (tag.form == Tag::Form::Real && points.take(tag.code, tag.real))
            continue;
        points.stop();
        addTag(chain, tag, db);
    }
    return chain.take();
}

bool chainToTags(const resbuf* chain, const DatabaseCore* db, TagList& tags)
{
    TagList read;
    for (const resbuf* node = chain; node; node = node->rbnext)
        if (!addNode(read, *node, db))
            return false;
    tags = std::move(read);
    return true;
}
