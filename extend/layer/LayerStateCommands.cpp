// LAYON, LAYTHW, LAYCUR, LAYCUR1, LAYLCK, LAYULK, LAYMCH - states of layers, and objects moved from one to another.
#include "core/EchoBracket.h"
#include "core/ExtendUtils.h"
#include "core/Handlers.h"
#include "core/PublicFunction.h"
#include "core/Variables.h"
#include "layer/LayerHelpers.h"
#include "system.h"
#include "vcdb_chains.h"
#include "vced.h"
#include "vchost.h"
#include "vcut.h"

namespace {

constexpr int kLayerGroup = 8;
constexpr int kMissed = 7;

void print(int id) { vcutPrintf(L"%s", StringFromID(id)); }

// The window shows the layers anew; it learns so once the command gives it time.
void tellWindow()
{
    constexpr unsigned kCommandMessage = 273;
    constexpr std::uintptr_t kLayersChanged = 10683;
    vkadPostMessageToWnd(nullptr, kCommandMessage, kLayersChanged, 0);
}

}  // namespace

void LayOn()
{
    CVcModuleResourceOverride resources(hLibModule);
    EchoBracket quiet;
    if (vcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_On", RTSTR, L"*", RTSTR, L"", RTNONE) != RTNORM)
        return;
    vcedRedraw(nullptr, 0);
    print(6197);
}

void Laythw()
{
    EchoBracket quiet;
    vcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_T", RTSTR, L"*", RTSTR, L"", RTNONE);
    CStdStrW done;
    done.LoadString(hLibModule, 3563);
    vcutPrintf(L"%s", done);
}

namespace {

// Counts what was moved; stops at the first that cannot be, on a locked layer say.
bool moveToLayer(const vds_name set, const wchar_t* layer, int& moved)
{
    int length = 0;
    vcedSSLength(set, &length);
    for (int i = 0; i < length; ++i) {
        vds_name name = {};
        wchar_t own[256] = {};
        vcedSSName(set, i, name);
        GetEntString(name, kLayerGroup, own, std::size(own));
        if (StrCmpI(own, layer) != 0) {
            resbuf* chain = vcdbEntGet(name);
            SetBufString(chain, kLayerGroup, layer);
            const int status = vcdbEntMod(chain);
            vcutRelRb(chain);
            if (status != RTNORM)
                return false;
            ++moved;
        }
        vcdbEntUpd(name);
    }
    return true;
}

}  // namespace

void LayCur()
{
    CVcModuleResourceOverride resources(hLibModule);
    EchoBracket quiet;
    wchar_t current[512] = {};
    getCurLayer(current, std::size(current));
    print(2262);
    vds_name set = {};
    const int status = vcedSSGet(nullptr, nullptr, nullptr, nullptr, set);
    if (status == RTCAN || status == RTERROR)
        return;
    int moved = 0;
    if (moveToLayer(set, current, moved))
        vcutPrintf(StringFromID(2263), moved, current);
    vcedSSFree(set);
}

int SetCurLayer()
{
    CVcModuleResourceOverride resources(hLibModule);
    print(2194);
    vds_name set = {};
    int length = 0;
    if (vcedSSGet(nullptr, nullptr, nullptr, nullptr, set) == RTNORM)
        vcedSSLength(set, &length);
    if (length == 0)
        return 0;
    vds_name first = {};
    vcedSSName(set, 0, first);
    vcedSSFree(set);
    CStdStrW layer;
    GetObjLayer(first, layer);
    dsc_set_clayer(layer);
    return RTNORM;
}

void LayCur1() { SetCurLayer(); }

void LayLck()
{
    CVcModuleResourceOverride resources(hLibModule);
    const CStdStrW label = StringFromID(2244);
    CStdStrW list = StringFromID(2245);
    EchoBracket quiet;
    bool hasLocked = false;
    for (;;) {
        vds_name picked = {};
        vds_point at = {};
        const int status = vcedEntSel(StringFromID(2246), picked, at);
        if (status == RTCAN || status == RTNONE)
            break;
        if (status != RTNORM) {
            if (shortVariable(L"ERRNO") != kMissed)
                break;
            print(2249);
            continue;
        }
        CStdStrW layer;
        GetObjLayer(picked, layer);
        if (vcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_LO", RTSTR, layer.GetString(), RTSTR, L"", RTNONE) != RTNORM)
            continue;
        hasLocked = true;
        vcutPrintf(L"%s %s", label, layer);
        // A name that begins one in the list counts as listed.
        const CStdStrW entry = L" " + layer;
        if (list.Find(entry) < 0)
            list += entry;
        tellWindow();
    }
    if (hasLocked)
        vcutPrintf(L"%s", list);
}

// One layer a run, where LAYLCK goes on until Enter.
void LayUlk()
{
    CVcModuleResourceOverride resources(hLibModule);
    EchoBracket quiet;
    for (;;) {
        vds_name picked = {};
        vds_point at = {};
        const int status = vcedEntSel(StringFromID(2247), picked, at);
        if (status == RTCAN)
            return;
        if (status != RTNORM) {
            print(2249);
            continue;
        }
        CStdStrW layer;
        GetObjLayer(picked, layer);
        vcedCommand(RTSTR, L"_.-Layer", RTSTR, L"_U", RTSTR, layer.GetString(), RTSTR, L"", RTNONE);
        vcutPrintf(StringFromID(2248), layer);
        return tellWindow();
    }
}

namespace {

void matchLayer(const vds_name set)
{
    vcedInitGet(0, nullptr);
    vds_name target = {};
    vds_point at = {};
    if (vcedEntSel(StringFromID(2250), target, at) != RTNORM)
        return;
    CStdStrW layer;
    GetObjLayer(target, layer);
    int length = 0;
    vcedSSLength(set, &length);
    for (int i = 0; i < length; ++i) {
        vds_name name = {};
        vcedSSName(set, i, name);
        mod_ent_layer(name, layer);
    }
    vcutPrintf(StringFromID(2252), length, layer);
}

}  // namespace

void LayMch()
{
    CVcModuleResourceOverride resources(hLibModule);
    print(2251);
    vds_name set = {};
    if (vcedSSGet(L":L", nullptr, nullptr, nullptr, set) == RTNORM)
        matchLayer(set);
    vcedSSFree(set);
}
