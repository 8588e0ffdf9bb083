#include "layer/LayerHelpers.h"

#include "core/ExtendUtils.h"
#include "core/PublicFunction.h"
#include "system.h"
#include "vcdb_chains.h"
#include "vced.h"
#include "vcut.h"

#include <utility>

namespace {

constexpr int kLayerGroup = 8, kFlagsGroup = 70;
constexpr std::size_t kNameSize = 1024;

CStdStrW currentLayer()
{
    wchar_t name[kNameSize] = {};
    getCurLayer(name, kNameSize);
    return name;
}

// "Yes" also for Enter alone.
int askToTurnCurrentOff(const wchar_t* name)
{
    CStdStrW prompt;
    prompt.Format(StringFromID(2260).GetString(), name);
    vcedInitGet(0, StringFromID(2209));
    wchar_t reply[512] = {};
    const int status = vcedGetKword(prompt, reply);
    if (status == RTCAN)
        return RTCAN;
    if (status != RTNORM && status != RTNONE)
        return RTERROR;
    const bool isYes = *reply == L'y' || *reply == L'Y' || !*reply;
    return isYes ? RTNORM : RTERROR;
}

void reportOff(int status, const wchar_t* name)
{
    if (status == RTNORM)
        vcutPrintf(StringFromID(2261), name);
}

}  // namespace

int mod_ent_layer(const vds_name name, const wchar_t* layer)
{
    resbuf* chain = layer ? vcdbEntGet(name) : nullptr;
    resbuf* node = getResbuf(chain, kLayerGroup);
    wchar_t* copy = nullptr;
    int done = 0;
    if (node && vcutNewString(layer, copy) == RTNORM) {
        std::swap(node->resval.rstring, copy);
        done = vcdbEntMod(chain) == RTNORM;
        std::swap(node->resval.rstring, copy);
        vcutDelString(copy);
    }
    vcutRelRb(chain);
    return done;
}

int OffOneLayer(const wchar_t* name)
{
    if (StrCmpI(currentLayer(), name) != 0) {
        reportOff(vcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_OFF", RTSTR, name, RTSTR, L"", RTNONE), name);
        return RTNORM;
    }
    const int answer = askToTurnCurrentOff(name);
    if (answer == RTNORM)
        reportOff(vcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_OFF", RTSTR, name, RTSTR, L"_Y", RTSTR, L"", RTNONE), name);
    return answer;
}

namespace {

int writeFlags(resbuf* record, const CStdStrW& name, int flags)
{
    // Above these lie bits that say how the record is used, not what state it is in.
    constexpr int kStates = 64;
    constexpr int kLocked = 4;
    int now = 0;
    GetBufInt(record, kFlagsGroup, now);
    if (now % kStates >= kLocked) {
        vcutPrintf(StringFromID(2214), name);
        return 0;
    }
    SetBufInt(record, kFlagsGroup, flags);
    vcdbEntMod(record);
    return 1;
}

}  // namespace

int dsc_frz_layer(CStdStrW name, int flags)
{
    const auto refuse = [](unsigned id) {
        vcutPrintf(L"%s", StringFromID(int(id)));
        return 0;
    };
    if (name == L"0")
        return refuse(2211);
    if (name == currentLayer())
        return refuse(2212);
    vds_name layer = {};
    resbuf* record = vcdbTblObjName(L"LAYER", name, layer) == RTNORM ? vcdbEntGet(layer) : nullptr;
    if (!record)
        return refuse(2213);
    const int done = writeFlags(record, name, flags);
    vcutRelRb(record);
    return done;
}
