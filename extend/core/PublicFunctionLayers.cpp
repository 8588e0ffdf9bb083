// String and integer system variables, layers, colours of layers.
#include "core/PublicFunction.h"

#include "core/ColourGroups.h"
#include "system.h"
#include "vccm.h"
#include "vcdb_chains.h"
#include "vced.h"
#include "vcut.h"

#include <algorithm>

int get_acad_str_var(const wchar_t* name, wchar_t* buffer, std::size_t size)
{
    resbuf variable = {};
    if (vcedGetVar(name, &variable) == RTNORM && variable.restype == RTSTR && variable.resval.rstring) {
        wcsncpy_s(buffer, size, variable.resval.rstring, _TRUNCATE);
        vcad_free(variable.resval.rstring);
    }
    return 1;
}

int set_acad_str_var(const wchar_t* name, const wchar_t* value)
{
    if (!name || !*name || !value)
        return 0;
    resbuf variable = {};
    vcedGetVar(name, &variable);
    if (vcutUpdString(value, variable.resval.rstring) != RTNORM)
        return 0;
    vcedSetVar(name, &variable);
    vcutDelString(variable.resval.rstring);
    return 1;
}

int set_acad_int_var(const wchar_t* name, int value)
{
    resbuf variable = {};
    vcedGetVar(name, &variable);
    variable.resval.rint = short(value);
    vcedSetVar(name, &variable);
    return 1;
}

namespace {

int currentName(const wchar_t* variable, wchar_t* buffer, std::size_t size)
{
    if (!buffer)
        return RTERROR;
    resbuf* node = vcutNewRb(RTSTR);
    if (vcedGetVar(variable, node) == RTNORM)
        wcsncpy_s(buffer, size, node->resval.rstring, _TRUNCATE);
    vcutRelRb(node);
    return RTNORM;
}

bool layerExists(const wchar_t* name)
{
    resbuf* record = vcdbTblSearch(L"LAYER", name, 0);
    if (record)
        vcutRelRb(record);
    return record != nullptr;
}

}  // namespace

int getCurLayer(wchar_t* buffer, std::size_t size) { return currentName(L"CLAYER", buffer, size); }

int getCurTextStyle(wchar_t* buffer, std::size_t size) { return currentName(L"TEXTSTYLE", buffer, size); }

int dsc_set_clayer(const wchar_t* name)
{
    set_acad_int_var(L"CMDECHO", 0);
    const int status = vcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_T", RTSTR, name, RTSTR, L"_M", RTSTR, name, RTSTR,
                                   L"_S", RTSTR, name, RTSTR, L"", RTNONE);
    if (status == RTNORM)
        set_acad_str_var(L"clayer", name);
    resbuf current = {};
    current.restype = RTSTR;
    if (vcutNewString(name, current.resval.rstring) == RTNORM) {
        vcedSetVar(L"CLAYER", &current);
        vcutDelString(current.resval.rstring);
    }
    // Callers want to see what they do next, so the echo comes on whatever it was.
    set_acad_int_var(L"CMDECHO", 1);
    return 1;
}

bool dsc_frz_layer(const wchar_t* name)
{
    set_acad_int_var(L"CMDECHO", 0);
    return vcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_T", RTSTR, name, RTSTR, L"_M", RTSTR, name, RTSTR, L"_S", RTSTR,
                       L"0", RTSTR, L"_F", RTSTR, name, RTSTR, L"", RTNONE) == RTNORM;
}

int createLayer(const wchar_t* name, int colour)
{
    set_acad_int_var(L"CMDECHO", 0);
    if (!layerExists(name))
        vcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_NEW", RTSTR, name, RTSTR, L"_color", RTSHORT, colour, RTSTR, name,
                    RTSTR, L"", RTNONE);
    return 1;
}

int createLayer(const wchar_t* name, int colour, const wchar_t* linetype)
{
    if (layerExists(name))
        return 0;
    resbuf* record = vcutBuildList(RTDXF0, L"LAYER", 70, 0, 6, linetype, 62, colour, 2, name, RTNONE);
    if (!record)
        return 0;
    vcdbEntMake(record);
    vcutRelRb(record);
    return 1;
}

int createLayer(CStdStrW name, int colour, CStdStrW linetype)
{
    return createLayer(name.GetString(), colour, linetype.GetString());
}

int CreateNewLayer(const wchar_t* name)
{
    wchar_t current[512] = {};
    getCurLayer(current, std::size(current));
    vds_name record = {};
    const int status = vcdbTblObjName(L"LAYER", current, record);
    if (status != RTNORM)
        return status;
    resbuf* chain = vcdbEntGet(record);
    if (!chain)
        return RTERROR;
    SetBufString(chain, 2, name);
    const int made = vcdbEntMake(chain);
    vcutRelRb(chain);
    return made;
}

namespace {

constexpr int kIndexGroup = 62;
constexpr short kTrueColourGroup = 420;
constexpr short kBookGroup = 430;
constexpr std::size_t kBookNameLength = 256;

resbuf* insertAfter(resbuf* node, short code)
{
    resbuf* added = vcutNewRb(code);
    added->rbnext = node->rbnext;
    node->rbnext = added;
    return added;
}

void removeGroup(resbuf* chain, int code)
{
    while (chain->rbnext && chain->rbnext->restype != code)
        chain = chain->rbnext;
    resbuf* removed = chain->rbnext;
    if (!removed)
        return;
    chain->rbnext = removed->rbnext;
    removed->rbnext = nullptr;
    vcutRelRb(removed);
}

// The index of a layer that is off is negative.
void setIndex(resbuf& node, short index) { node.resval.rint = node.resval.rint < 0 ? short(-index) : index; }

void setTrueColour(resbuf* chain, resbuf* indexNode, const VcCmColor& colour)
{
    resbuf* node = getResbuf(chain, kTrueColourGroup);
    if (colour.isByColor()) {
        if (!node)
            node = insertAfter(indexNode, kTrueColourGroup);
        node->resval.rlong = std::int32_t(colour.rgb());
    } else if (node && colour.isByACI()) {
        removeGroup(chain, kTrueColourGroup);
    }
}

}  // namespace

int setColourBookName(resbuf* chain, const wchar_t* bookName)
{
    if (!bookName || !*bookName) {
        removeGroup(chain, kBookGroup);
        return RTNORM;
    }
    resbuf* trueColour = getResbuf(chain, kTrueColourGroup);
    if (!trueColour)
        return RTERROR;
    resbuf* node = getResbuf(chain, kBookGroup);
    if (!node)
        node = insertAfter(trueColour, kBookGroup);
    const std::wstring name(bookName, std::min(std::wcslen(bookName), kBookNameLength));
    return vcutUpdString(name.c_str(), node->resval.rstring);
}

// Colours carry no name of a colour book, so one that the chain had no longer holds.
int vds_UpdateVkColorToResbufList(resbuf* chain, const VcCmColor& colour)
{
    resbuf* index = getResbuf(chain, kIndexGroup);
    if (!index)
        return RTERROR;
    setIndex(*index, colour.colorIndex());
    setTrueColour(chain, index, colour);
    return setColourBookName(chain, nullptr);
}
