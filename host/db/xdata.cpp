#include "host/db/xdata.h"

#include "host/base/group_code.h"
#include "host/base/rb.h"
#include "host/base/unicode.h"
#include "host/db/database.h"

namespace {

// Splits packed data into runs of one application each: f(application, first tag of its values, end).
struct Run {
    std::string application;
    TagList tags;  // with the 1001 in front
};

std::vector<Run> runsOf(const TagList& xdata)
{
    std::vector<Run> runs;
    for (const Tag& tag : xdata) {
        if (tag.code == 1001)
            runs.push_back({std::string(tag.view()), {}});
        if (!runs.empty())
            runs.back().tags.add(tag);
    }
    return runs;
}

void addPoint(TagList& tags, const resbuf& node)
{
    for (int axis = 0; axis < 3; ++axis)
        tags.addReal(node.restype + axis * 10, node.resval.rpoint[axis]);
}

bool addNode(TagList& tags, const resbuf& node)
{
    const int code = node.restype;
    if (code < 1000 || code > 1071)
        return false;
    switch (groupKind(code)) {
    case GroupKind::Point:
        addPoint(tags, node);
        return true;
    case GroupKind::Real:
        tags.addReal(code, rbReal(node));
        return true;
    case GroupKind::Int16:
    case GroupKind::Int32:
        tags.addInteger(code, rbInteger(node));
        return true;
    case GroupKind::Binary:
        tags.addBytes(code, rbBytes(node));
        return true;
    default:
        if (code == 1005)
            tags.addHandle(code, std::strtoull(rbUtf8(node).c_str(), nullptr, 16));
        else
            tags.addText(code, rbUtf8(node));
        return true;
    }
}

}

resbuf* xdataToChain(const TagList& xdata, const std::optional<std::string>& application)
{
    RbBuilder chain;
    for (const Run& run : runsOf(xdata)) {
        if (application && !equalNoCase(*application, run.application))
            continue;
        resbuf* point = nullptr;
        for (const Tag& tag : run.tags) {
            if (groupKind(tag.code) == GroupKind::Point && tag.form == Tag::Form::Real) {
                point = &chain.add(tag.code);
                setRbPoint(*point, tag.real, 0, 0);
            } else if (tag.form == Tag::Form::Real && point &&
                       (tag.code == point->restype + 10 || tag.code == point->restype + 20)) {
                point->resval.rpoint[(tag.code - point->restype) / 10] = tag.real;
            } else if (tag.form == Tag::Form::Real) {
                chain.addReal(tag.code, tag.real);
            } else if (tag.form == Tag::Form::Bytes) {
                chain.addBytes(tag.code, tag.view());
            } else if (tag.form == Tag::Form::Integer && tag.code == 1005) {
                char hex[17];
                VcDbHandle(std::uint64_t(tag.integer)).getIntoAsciiBuffer(hex);
                chain.addUtf8(tag.code, hex);
            } else if (tag.form == Tag::Form::Integer) {
                chain.addInteger(tag.code, tag.integer);
            } else if (isStringKind(groupKind(tag.code))) {  // a damaged file may have a text in place of a number
                chain.addUtf8(tag.code, tag.view());
            }
        }
    }
    return chain.take().release();
}

std::size_t xdataSize(const TagList& xdata)
{
    std::size_t size = 0;
    for (const Tag& tag : xdata)
        size += 1 + (tag.form == Tag::Form::Utf8 || tag.form == Tag::Form::Bytes ? tag.view().size() + 3
                     : tag.code == 1070                                          ? 2
                     : tag.code == 1071                                          ? 4
                                                                                 : 8);
    return size;
}

Vcad::ErrorStatus mergeXData(const TagList& old, const resbuf* chain, DatabaseCore* db, TagList& merged)
{
    std::vector<Run> runs = runsOf(old);
    Run* current = nullptr;
    for (const resbuf* node = chain; node; node = node->rbnext) {
        if (node->restype == -3)
            continue;
        if (node->restype == 1001) {
            const std::string name = rbUtf8(*node);
            if (db && db->findRecord(NameTable::AppId, name).isNull())
                return Vcad::eRegAppIdNotFound;
            std::erase_if(runs, [&](const Run& run) { return equalNoCase(run.application, name); });
            current = &runs.emplace_back(Run{name, {}});
            current->tags.addText(1001, name);
        } else if (!current || !addNode(current->tags, *node)) {
            return Vcad::eInvalidInput;
        }
    }
    merged.clear();
    for (const Run& run : runs)
        if (run.tags.count() > 1)
            merged.append(run.tags);
    return xdataSize(merged) > kXDataLimit ? Vcad::eXdataSizeExceeded : Vcad::eOk;
}
