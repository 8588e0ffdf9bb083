// Entities by name, and selection sets.
#include "core/PublicFunction.h"

#include "system.h"
#include "vcdb_chains.h"
#include "vced.h"
#include "vcut.h"

#include <algorithm>

namespace {

constexpr int kExternalReference = 4;

// RTERROR for an entity that cannot be read; otherwise RTNORM, whether the group was there or not.
template <class Action>
int withGroup(const vds_name name, int code, Action action)
{
    resbuf* chain = vcdbEntGet(name);
    if (!chain)
        return RTERROR;
    if (const resbuf* node = getResbuf(chain, code))
        action(*node);
    vcutRelRb(chain);
    return RTNORM;
}

bool isExternalReference(const wchar_t* block)
{
    resbuf* record = vcdbTblSearch(L"BLOCK", block, 0);
    int flags = 0;
    GetBufInt(record, 70, flags);
    if (record)
        vcutRelRb(record);
    return (flags & kExternalReference) != 0;
}

}  // namespace

int GetEntInt(const vds_name name, int code, int& value)
{
    return withGroup(name, code, [&](const resbuf& node) { value = node.resval.rint; });
}

int GetEntReal(const vds_name name, int code, double& value)
{
    return withGroup(name, code, [&](const resbuf& node) { value = node.resval.rreal; });
}

int GetEntPoint(const vds_name name, int code, vds_point pointOut)
{
    return withGroup(name, code, [&](const resbuf& node) { std::copy_n(node.resval.rpoint, 3, pointOut); });
}

int GetEntString(const vds_name name, int code, wchar_t* buffer, std::size_t size)
{
    return withGroup(name, code, [&](const resbuf& node) {
        wcsncpy_s(buffer, size, node.resval.rstring ? node.resval.rstring : L"", _TRUNCATE);
    });
}

int GetEntName(const vds_name name, int code, vds_name nameOut)
{
    return withGroup(name, code, [&](const resbuf& node) { std::copy_n(node.resval.rlname, 2, nameOut); });
}

int GetEntType(const vds_name name, wchar_t* buffer, std::size_t size)
{
    return withGroup(name, 0, [&](const resbuf& node) {
        if (buffer)
            wcsncpy_s(buffer, size, node.resval.rstring, _TRUNCATE);
    });
}

namespace {

struct EntityKind {
    const wchar_t* type;
    int code;
};

constexpr int kPolyline = 6;

constexpr EntityKind kKinds[] = {
    {L"LINE", 1},     {L"LWPOLYLINE", 2}, {L"ARC", 3},
    {L"CIRCLE", 4},   {L"ELLIPSE", 5},    {L"POLYLINE", kPolyline},
    {L"SPLINE", 8},   {L"POINT", 9},      {L"3DFACE", 10},
    {L"3DSOLID", 12}, {L"REGION", 13},    {L"BODY", 14},
    {L"INSERT", 15},  {L"TEXT", 16},      {L"ATTDEF", 17},
    {L"ATTRIB", 18},  {L"HATCH", 20},     {L"DIMENSION", 21},
    {L"TRACE", 22},   {L"SOLID", 23},     {L"MTEXT", 24},
    {L"VERTEX", 25},  {L"SEQEND", 26},    {L"PLANT", 27},
    {L"MLINE", 101},  {L"XLINE", 102},    {L"VIEWPORT", 201},
};

// The first of these flags that is set decides.
int polylineKind(int flags)
{
    if (flags & 8)
        return 7;
    if (flags & 16)
        return 11;
    return flags & 64 ? 19 : kPolyline;
}

int kindOfChain(resbuf* chain)
{
    const resbuf* type = dxf(chain, 0);
    if (!type)
        return 0;
    for (const EntityKind& kind : kKinds) {
        if (StrCmpI(type->resval.rstring, kind.type) != 0)
            continue;
        int flags = 0;
        if (kind.code != kPolyline)
            return kind.code;
        return GetBufInt(chain, 70, flags) == RTNORM ? polylineKind(flags) : kPolyline;
    }
    return 0;
}

}  // namespace

int getEntType(const vds_name name)
{
    resbuf* chain = vcdbEntGet(name);
    if (!chain)
        return 0;
    const int kind = kindOfChain(chain);
    vcutRelRb(chain);
    return kind;
}

int GetBufFirstAndRefNames(const resbuf* chain, vds_name first, vds_name reference)
{
    if (GetFirstNameInBuf(chain, first) != RTNORM)
        return RTERROR;
    for (const resbuf* node = chain->rbnext; node; node = node->rbnext) {
        wchar_t block[256] = {};
        GetEntString(node->resval.rlname, 2, block, 255);
        if (isExternalReference(block))
            return GetFirstNameInBuf(node, reference);
    }
    return RTNORM;
}

int entity_data_int_set(short code, const vds_name name, int value)
{
    resbuf* chain = vcdbEntGet(name);
    if (!chain)
        return 0;
    setrb_int(chain, code, value);
    vcdbEntMod(chain);
    return vcutRelRb(chain);
}

int SetEntLayer(const vds_name name, const wchar_t* layer)
{
    resbuf* chain = vcdbEntGet(name);
    if (!chain) {
        vcutPrintf(L"\nSetting error!");
        return RTERROR;
    }
    for (resbuf* node = getResbuf(chain, 8); node; node = getResbuf(node->rbnext, 8))
        vcutUpdString(layer, node->resval.rstring);
    vcdbEntMod(chain);
    vcdbEntUpd(name);
    vcutRelRb(chain);
    vcedRetVoid();
    return RTNORM;
}

bool GetObjLayer(const vds_name name, CStdStrW& layer)
{
    bool found = false;
    withGroup(name, 8, [&](const resbuf& node) {
        layer = node.resval.rstring;
        found = true;
    });
    return found;
}

int ssaddss(const vds_name from, vds_name to)
{
    int count = 0;
    vcedSSLength(from, &count);
    int status = RTNORM;
    for (int i = 0; i < count; ++i) {
        vds_name entity = {};
        status = vcedSSName(from, i, entity);
        if (status == RTNORM)
            status = vcedSSAdd(entity, to, to);
    }
    return status;
}

int GetLastSel(const vds_name afterName, vds_name set)
{
    const bool fromFirst = afterName[0] == 0 && afterName[1] == 0;
    vds_name entity = {afterName[0], afterName[1]};
    int status = vcdbEntNext(fromFirst ? nullptr : entity, entity);
    for (; status == RTNORM; status = vcdbEntNext(entity, entity))
        vcedSSAdd(entity, set, set);
    return RTNORM;
}

void EmptyEntFromSS(const vds_name set)
{
    int count = 0;
    vcedSSLength(set, &count);
    while (count-- > 0) {
        vds_name entity = {};
        if (vcedSSName(set, count, entity) == RTNORM)
            vcdbEntDel(entity);
    }
}

void RedrawSel(const vds_name set, bool highlight)
{
    constexpr int kHighlight = 3, kPlain = 4;
    int count = 0;
    vcedSSLength(set, &count);
    for (int i = 0; i < count; ++i) {
        vds_name entity = {};
        if (vcedSSName(set, i, entity) == RTNORM)
            vcedRedraw(entity, highlight ? kHighlight : kPlain);
    }
}
