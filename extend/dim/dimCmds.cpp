// DIMEX and DIMIM.
#include "core/EchoBracket.h"
#include "core/ExtendUtils.h"
#include "core/Handlers.h"
#include "dim/DimStyleEx.h"
#include "dim/DimStyleFile.h"
#include "dim/DimStyleIm.h"
#include "dim/OwnedChain.h"
#include "vcdb_chains.h"
#include "vced.h"

namespace {

void exportStyles()
{
    CStringArray names;
    CStdStrW path = L"DIM.DIM";
    int textStyleOption = kTextStyleNameOnly;
    if (GetOutPara(names, path, textStyleOption) == RTNORM && OutDimStyle(names, path, textStyleOption) == RTNORM)
        vcutPrintf(L"%s", StringFromID(2010));
}

// Written back as it is, a dimension or a leader is worked out anew with its style.
void refresh(const vds_name set, int index)
{
    vds_name name = {};
    if (vcedSSName(set, index, name) != RTNORM)
        return;
    if (const OwnedChain chain{vcdbEntGet(name)})
        vcdbEntMod(chain.get());
}

void refreshDimensions()
{
    const OwnedChain filter(vcutBuildList(-4, L"<OR", RTDXF0, L"DIMENSION", RTDXF0, L"LEADER", -4, L"OR>", RTNONE));
    vds_name set = {};
    if (vcedSSGet(L"X", nullptr, nullptr, filter.get(), set) != RTNORM)
        return;
    int length = 0;
    vcedSSLength(set, &length);
    for (int i = length - 1; i >= 0; --i)
        refresh(set, i);
    vcedSSFree(set);
}

void importStyles()
{
    CStdStrW path;
    int importOption = kKeepExisting;
    if (GetINPara(path, importOption) != RTNORM)
        return;
    if (InDimStyle(path, importOption) != RTNORM) {
        vcutPrintf(L"%s", StringFromID(2015));
        return;
    }
    vcutPrintf(L"%s", StringFromID(2014));
    refreshDimensions();
}

void runSilently(void (*work)())
{
    CVcModuleResourceOverride resources(hLibModule);
    {
        EchoBracket quiet;
        work();
    }
    vcedRetVoid();
}

}  // namespace

void SAG_dimex() { runSilently(&exportStyles); }

void SAG_dimim() { runSilently(&importStyles); }
