#include "host/base/rb.h"

#include "host/base/group_code.h"
#include "host/base/heap.h"
#include "host/base/unicode.h"

#include <cstring>
#include <cwchar>
#include <limits>
#include <new>

namespace {

void releaseValue(resbuf& node)
{
    const GroupKind kind = groupKind(node.restype);
    if (isStringKind(kind)) {
        heapRelease(node.resval.rstring);
        node.resval.rstring = nullptr;
    } else if (kind == GroupKind::Binary) {
        heapRelease(node.resval.rbinary.buf);
        node.resval.rbinary = {};
    }
}

std::wstring_view textOf(const resbuf& node)
{
    return node.resval.rstring ? std::wstring_view(node.resval.rstring) : std::wstring_view();
}

}  // namespace

resbuf* newRb(int code)
{
    auto* node = static_cast<resbuf*>(heapAllocate(sizeof(resbuf)));
    if (node)
        node->restype = static_cast<std::int16_t>(code);
    return node;
}

void releaseRb(resbuf* chain)
{
    while (chain) {
        resbuf* next = chain->rbnext;
        releaseValue(*chain);
        heapRelease(chain);
        chain = next;
    }
}

bool setRbString(resbuf& node, std::wstring_view text)
{
    wchar_t* copy = heapString(text);
    if (!copy)
        return false;
    releaseValue(node);
    node.resval.rstring = copy;
    return true;
}

bool setRbUtf8(resbuf& node, std::string_view text)
{
    wchar_t* copy = heapStringFromUtf8(text);
    if (!copy)
        return false;
    releaseValue(node);
    node.resval.rstring = copy;
    return true;
}

bool setRbBytes(resbuf& node, std::string_view bytes)
{
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<std::int16_t>::max()))
        return false;
    auto* copy = static_cast<char*>(heapAllocate(bytes.size()));
    if (!copy)
        return false;
    if (!bytes.empty())
        std::memcpy(copy, bytes.data(), bytes.size());
    releaseValue(node);
    node.resval.rbinary = {static_cast<std::int16_t>(bytes.size()), copy};
    return true;
}

void setRbPoint(resbuf& node, double x, double y, double z)
{
    node.resval.rpoint[0] = x;
    node.resval.rpoint[1] = y;
    node.resval.rpoint[2] = z;
}

void setRbInt64(resbuf& node, std::int64_t value)
{
    node.resval.rlname[0] = value;
    node.resval.rlname[1] = 0;
}

std::int64_t rbInteger(const resbuf& node)
{
    switch (groupKind(node.restype)) {
    case GroupKind::Int16:
    case GroupKind::Bool:
        return node.resval.rint;
    case GroupKind::Int32:
        return node.resval.rlong;
    case GroupKind::Int64:
        return node.resval.rlname[0];
    default:
        return 0;
    }
}

double rbReal(const resbuf& node)
{
    return groupKind(node.restype) == GroupKind::Real ? node.resval.rreal : static_cast<double>(rbInteger(node));
}

std::string rbUtf8(const resbuf& node)
{
    return isStringKind(groupKind(node.restype)) ? wideToUtf8(textOf(node)) : std::string();
}

std::string_view rbBytes(const resbuf& node)
{
    if (groupKind(node.restype) != GroupKind::Binary || node.resval.rbinary.clen <= 0 || !node.resval.rbinary.buf)
        return {};
    return {node.resval.rbinary.buf, static_cast<std::size_t>(node.resval.rbinary.clen)};
}

RbPtr copyRbNode(const resbuf& node)
{
    RbPtr copy(newRb(node.restype));
    if (!copy)
        return nullptr;
    const GroupKind kind = groupKind(node.restype);
    if (kind == GroupKind::Binary)
        setRbBytes(*copy, rbBytes(node));
    else if (!isStringKind(kind))
        copy->resval = node.resval;
    else if (node.resval.rstring)
        setRbString(*copy, node.resval.rstring);
    return copy;
}

RbPtr copyRbChain(const resbuf* chain)
{
    RbBuilder copy;
    for (; chain; chain = chain->rbnext)
        copy.append(copyRbNode(*chain));
    return copy.take();
}

bool sameRbValue(const resbuf& a, const resbuf& b)
{
    if (a.restype != b.restype)
        return false;
    const auto &u = a.resval, &v = b.resval;
    switch (groupKind(a.restype)) {
    case GroupKind::None:
        return true;
    case GroupKind::String:
    case GroupKind::Handle:
        return textOf(a) == textOf(b);
    case GroupKind::Reference:
        return u.rlname[0] == v.rlname[0] && u.rlname[1] == v.rlname[1];
    case GroupKind::Point:
        return std::equal(u.rpoint, u.rpoint + 3, v.rpoint);
    case GroupKind::Real:
        return u.rreal == v.rreal;
    case GroupKind::Binary:
        return rbBytes(a) == rbBytes(b);
    default:
        return rbInteger(a) == rbInteger(b);
    }
}

resbuf& RbBuilder::add(int code)
{
    resbuf* node = newRb(code);
    if (!node)
        throw std::bad_alloc();
    append(RbPtr(node));
    return *node;
}

void RbBuilder::addString(int code, std::wstring_view text) { setRbString(add(code), text); }

void RbBuilder::addUtf8(int code, std::string_view text) { setRbUtf8(add(code), text); }

void RbBuilder::addReal(int code, double value) { add(code).resval.rreal = value; }

void RbBuilder::addInteger(int code, std::int64_t value)
{
    resbuf& node = add(code);
    switch (groupKind(code)) {
    case GroupKind::Int32:
        node.resval.rlong = static_cast<std::int32_t>(value);
        break;
    case GroupKind::Int64:
        setRbInt64(node, value);
        break;
    default:
        node.resval.rint = static_cast<std::int16_t>(value);
    }
}

void RbBuilder::addPoint(int code, double x, double y, double z) { setRbPoint(add(code), x, y, z); }

void RbBuilder::addName(int code, const vds_name name)
{
    resbuf& node = add(code);
    node.resval.rlname[0] = name[0];
    node.resval.rlname[1] = name[1];
}

void RbBuilder::addBytes(int code, std::string_view bytes) { setRbBytes(add(code), bytes); }

void RbBuilder::append(RbPtr chain)
{
    if (!chain)
        return;
    resbuf* first = chain.release();
    if (m_tail)
        m_tail->rbnext = first;
    else
        m_head.reset(first);
    for (m_tail = first; m_tail->rbnext;)
        m_tail = m_tail->rbnext;
}

RbPtr RbBuilder::take()
{
    m_tail = nullptr;
    return std::move(m_head);
}
