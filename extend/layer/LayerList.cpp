// The list of layers, as LAYDEL shows it.
#include "core/ExtendUtils.h"
#include "core/PublicFunction.h"
#include "layer/LayerHelpers.h"
#include "vcdb_chains.h"
#include "vced.h"
#include "vcut.h"

namespace {

constexpr std::size_t kNameSize = 1024;

void printHeading()
{
    vcutPrintf(L"%s", StringFromID(2215));
    vcutPrintf(L"\n------------------------ ------------ ------------- --------------------");
}

void printAllRows()
{
    printHeading();
    for (resbuf* record = vcdbTblNext(L"LAYER", 1); record; record = vcdbTblNext(L"LAYER", 0)) {
        GetLayInf(record);
        vcutRelRb(record);
    }
}

bool printRowOf(const wchar_t* name)
{
    resbuf* record = vcdbTblSearch(L"LAYER", name, 0);
    if (!record) {
        vcutPrintf(L"%s", StringFromID(2216));
        return false;
    }
    printHeading();
    GetLayInf(record);
    vcutRelRb(record);
    return true;
}

}  // namespace

void GetLayInf(const resbuf* record)
{
    const wchar_t *name = L"", *linetype = L"";
    int flags = 0, colour = 0;
    for (; record; record = record->rbnext) {
        switch (record->restype) {
        case 2:
            name = record->resval.rstring;
            break;
        case 6:
            linetype = record->resval.rstring;
            break;
        case 62:
            colour = record->resval.rint;
            break;
        case 70:
            flags = record->resval.rint;
            break;
        default:
            break;
        }
    }
    vcutPrintf(L"\n%-25ls%-13d%-14d%ls", name, flags, colour, linetype);
}

void ShowLayer(CStdStrW name)
{
    wchar_t current[kNameSize] = {};
    getCurLayer(current, kNameSize);
    if (name.IsEmpty())
        printAllRows();
    else if (!printRowOf(name))
        return;
    vcutPrintf(L"%s%s", StringFromID(2217), *current ? current : L"0");
}

int ListLayer()
{
    wchar_t reply[512] = {};
    const int status = vcedGetString(0, StringFromID(2201), reply);
    if (status == RTCAN)
        return 0;
    const CStdStrW name = reply;
    ShowLayer(status == RTNORM && name != L"*" ? name : CStdStrW());
    return 1;
}
