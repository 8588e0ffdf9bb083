// Chains of result buffers: look-up, getters, setters, building.
#include "core/PublicFunction.h"

#include "system.h"
#include "vcut.h"

#include <algorithm>

resbuf* getResbuf(resbuf* chain, int code)
{
    while (chain && chain->restype != code)
        chain = chain->rbnext;
    return chain;
}

resbuf* dxf(resbuf* chain, short code) { return getResbuf(chain, code); }

int vk_Associate(resbuf* chain, int code, resbuf** nodeOut)
{
    resbuf* node = getResbuf(chain, code);
    if (!node)
        return -1;
    *nodeOut = node;
    return 0;
}

bool chkrestype(const resbuf* node, int rbType) { return dxf2rbtype(node->restype) == rbType; }

namespace {

resbuf* checkedNode(resbuf* chain, short code, int rbType)
{
    resbuf* node = dxf(chain, code);
    return node && chkrestype(node, rbType) ? node : nullptr;
}

// What does not fit is cut.
void copyText(wchar_t* buffer, std::size_t size, const wchar_t* text)
{
    if (buffer && size > 0)
        wcsncpy_s(buffer, size, text ? text : L"", _TRUNCATE);
}

// A found flag or a status, with the node handed to the action when there is one.
template <class Action>
bool withNode(resbuf* chain, int code, Action action)
{
    resbuf* node = getResbuf(chain, code);
    if (node)
        action(*node);
    return node != nullptr;
}

int asStatus(bool found) { return found ? RTNORM : RTERROR; }

}  // namespace

int getrbstring(wchar_t* buffer, std::size_t size, resbuf* chain, short code)
{
    const resbuf* node = checkedNode(chain, code, RTSTR);
    if (node)
        copyText(buffer, size, node->resval.rstring);
    return asStatus(node);
}

int getrbshort(int* valueOut, resbuf* chain, short code)
{
    const resbuf* node = checkedNode(chain, code, RTSHORT);
    if (node)
        *valueOut = node->resval.rint;
    return asStatus(node);
}

int getrbreal(double* valueOut, resbuf* chain, short code)
{
    const resbuf* node = checkedNode(chain, code, RTREAL);
    if (node)
        *valueOut = node->resval.rreal;
    return asStatus(node);
}

int getrb_point(resbuf* chain, short code, vds_point pointOut)
{
    return withNode(chain, code, [&](resbuf& node) { std::copy_n(node.resval.rpoint, 3, pointOut); });
}

int getrb_string(resbuf* chain, short code, wchar_t* buffer, std::size_t size)
{
    return withNode(chain, code, [&](resbuf& node) { copyText(buffer, size, node.resval.rstring); });
}

int getrb_real(resbuf* chain, short code, double* valueOut)
{
    return withNode(chain, code, [&](resbuf& node) { *valueOut = node.resval.rreal; });
}

int setrb_int(resbuf* chain, short code, int value)
{
    return withNode(chain, code, [&](resbuf& node) { node.resval.rint = (value & 0xFF) != 0; });
}

int setrb_string(resbuf* chain, short code, wchar_t* newString, wchar_t** oldOut)
{
    return withNode(chain, code, [&](resbuf& node) {
        wchar_t* old = node.resval.rstring;
        node.resval.rstring = newString;
        if (oldOut)
            *oldOut = old;
        else if (old)
            vcutDelString(old);
    });
}

int GetBufInt(resbuf* chain, int code, int& value)
{
    return asStatus(withNode(chain, code, [&](resbuf& node) { value = node.resval.rint; }));
}

int GetBufReal(resbuf* chain, int code, double& value)
{
    return asStatus(withNode(chain, code, [&](resbuf& node) { value = node.resval.rreal; }));
}

int GetBufString(resbuf* chain, int code, wchar_t* buffer, std::size_t size)
{
    return asStatus(withNode(chain, code, [&](resbuf& node) { copyText(buffer, size, node.resval.rstring); }));
}

int GetBufName(resbuf* chain, int code, vds_name name)
{
    return asStatus(withNode(chain, code, [&](resbuf& node) { std::copy_n(node.resval.rlname, 2, name); }));
}

int SetBufInt(resbuf* chain, int code, int value)
{
    return asStatus(withNode(chain, code, [&](resbuf& node) { node.resval.rint = short(value); }));
}

int SetBufReal(resbuf* chain, int code, double value)
{
    return asStatus(withNode(chain, code, [&](resbuf& node) { node.resval.rreal = value; }));
}

int SetBufString(resbuf* chain, int code, const wchar_t* text)
{
    return asStatus(withNode(chain, code, [&](resbuf& node) { vcutUpdString(text, node.resval.rstring); }));
}

int SetBufPoint(resbuf* chain, int code, const vds_point point)
{
    CStdStrW().LoadString(2546);
    return asStatus(withNode(chain, code, [&](resbuf& node) { std::copy_n(point, 3, node.resval.rpoint); }));
}

int GetFirstNameInBuf(const resbuf* chain, vds_name name)
{
    if (!chain)
        return RTERROR;
    std::copy_n(chain->resval.rlname, 2, name);
    return RTNORM;
}

int GetLastNameInBuf(const resbuf* chain, vds_name name)
{
    while (chain && chain->rbnext)
        chain = chain->rbnext;
    return GetFirstNameInBuf(chain, name);
}

int GetBufLast2Names(const resbuf* chain, vds_name last, vds_name secondLast)
{
    const resbuf* before = nullptr;
    for (; chain && chain->rbnext; chain = chain->rbnext)
        before = chain;
    if (before)
        GetFirstNameInBuf(before, secondLast);
    return GetFirstNameInBuf(chain, last);
}

resbuf* alloc_rb(short code, const wchar_t* kind, const void* value)
{
    resbuf* node = vcutNewRb(code);
    if (!node)
        return nullptr;
    node->rbnext = nullptr;
    const auto is = [kind](const wchar_t* other) { return StrCmpI(kind, other) == 0; };
    if (is(L"rint"))
        node->resval.rint = *static_cast<const short*>(value);
    else if (is(L"rreal"))
        node->resval.rreal = *static_cast<const double*>(value);
    else if (is(L"rpoint"))
        std::copy_n(static_cast<const double*>(value), 3, node->resval.rpoint);
    else if (is(L"rstring"))
        vcutNewString(static_cast<const wchar_t*>(value), node->resval.rstring);
    else if (is(L"rlong"))
        node->resval.rlong = *static_cast<const std::int32_t*>(value);
    else if (is(L"rlname"))
        std::copy_n(static_cast<const std::int64_t*>(value), 2, node->resval.rlname);
    return node;
}

void append_rblist(resbuf*& chain, resbuf* tail)
{
    resbuf** end = &chain;
    while (*end)
        end = &(*end)->rbnext;
    *end = tail;
}

void appendRb(resbuf*& chain, resbuf* tail) { append_rblist(chain, tail); }

namespace {

constexpr short kExtendedData = -3;
constexpr short kExtendedBinary = 1004;

bool copyValue(const resbuf& from, resbuf& to)
{
    switch (dxfCodeToDataType(from.restype)) {
    case RTSTR:
        return vcutNewString(from.resval.rstring, to.resval.rstring) == RTNORM;
    case RT3DPOINT:
        std::copy_n(from.resval.rpoint, 3, to.resval.rpoint);
        return true;
    case RTREAL:
        to.resval.rreal = from.resval.rreal;
        return true;
    case RTSHORT:
        to.resval.rint = from.resval.rint;
        return true;
    case RTLONG:
        to.resval.rlong = from.resval.rlong;
        return true;
    case RTENAME:
    case -1:
    case -2:
        std::copy_n(from.resval.rlname, 2, to.resval.rlname);
        return true;
    case kExtendedBinary:
        return vcutBuildRbBin(&to, std::size_t(from.resval.rbinary.clen), from.resval.rbinary.buf) == RTNORM;
    case kExtendedData:
        return true;
    default:
        return false;
    }
}

}  // namespace

// A node whose kind is not known is lost: callers count on null and nothing more.
resbuf* duplicateResbufNode(const resbuf* node)
{
    resbuf* copy = vcutNewRb(node->restype);
    return copy && copyValue(*node, *copy) ? copy : nullptr;
}

void deleteResbufNode(resbuf*& chain, short code)
{
    resbuf* kept = nullptr;
    resbuf** end = &kept;
    for (const resbuf* node = chain; node; node = node->rbnext) {
        if (node->restype == code)
            continue;
        if (resbuf* copy = duplicateResbufNode(node)) {
            *end = copy;
            end = &copy->rbnext;
        }
    }
    vcutRelRb(chain);
    chain = kept;
}

void LwplrbAddVertFromData(resbuf*& tail, const vds_point point, double startWidth, double endWidth, double bulge)
{
    resbuf* const nodes[] = {alloc_rb(10, L"rpoint", point), alloc_rb(40, L"rreal", &startWidth),
                             alloc_rb(41, L"rreal", &endWidth), alloc_rb(42, L"rreal", &bulge)};
    for (resbuf* node : nodes) {
        tail->rbnext = node;
        tail = node;
    }
}
