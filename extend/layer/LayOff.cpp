// LAYOFF - turns off the layers of what is picked. What a pick inside a block or an external reference means is the
// nesting mode.
#include "core/EchoBracket.h"
#include "core/ExtendUtils.h"
#include "core/Handlers.h"
#include "core/PublicFunction.h"
#include "core/Variables.h"
#include "layer/LayerHelpers.h"
#include "system.h"
#include "vcdb_chains.h"
#include "vced.h"
#include "vcut.h"

#include <optional>

namespace {

constexpr int kAnyText = 128;
constexpr int kMissed = 7;
constexpr int kLayerGroup = 8, kNameGroup = 2, kFlagsGroup = 70;
constexpr int kExternalReference = 4;
constexpr std::size_t kLayerLength = 500, kBlockLength = 255;

// Of an object within blocks: its own layer (1), that of the innermost block reference (2), that of the outermost (3).
// It lasts from one run to the next.
int nOp = 2;

CStdStrW layerOf(const vds_name name)
{
    wchar_t layer[kLayerLength + 1] = {};
    GetEntString(name, kLayerGroup, layer, std::size(layer));
    return layer;
}

CStdStrW blockOf(const vds_name reference)
{
    wchar_t block[kBlockLength + 1] = {};
    GetEntString(reference, kNameGroup, block, std::size(block));
    return block;
}

std::optional<int> flagsOfBlock(const wchar_t* block)
{
    resbuf* record = vcdbTblSearch(L"BLOCK", block, 0);
    if (!record)
        return std::nullopt;
    int flags = 0;
    GetBufInt(record, kFlagsGroup, flags);
    vcutRelRb(record);
    return flags;
}

bool isExternal(int flags) { return (flags & kExternalReference) != 0; }

// Layers of an external reference carry its name in front. Layer 0 stays itself, and with it every name that begins so.
CStdStrW withReferenceName(const CStdStrW& layer, const CStdStrW& block)
{
    if (layer.Left(1) == L"0" || layer.Find(L'|') >= 0)
        return layer;
    return (block + L"|" + layer).Left(kBlockLength);
}

CStdStrW ownLayer(const vds_name picked, const resbuf* containers)
{
    const CStdStrW layer = layerOf(picked);
    if (!containers)
        return layer;
    vds_name outermost = {};
    GetLastNameInBuf(containers, outermost);
    const CStdStrW block = blockOf(outermost);
    return isExternal(flagsOfBlock(block).value_or(0)) ? withReferenceName(layer, block) : layer;
}

// Where the innermost reference names no block, the first external one around it stands in.
CStdStrW layerByReferenceAround(const resbuf* containers)
{
    vds_name innermost = {}, reference = {};
    GetBufFirstAndRefNames(containers, innermost, reference);
    if (reference[0] == 0 && reference[1] == 0)
        return {};
    const CStdStrW block = blockOf(reference);
    const CStdStrW layer = layerOf(innermost);
    return isExternal(flagsOfBlock(block).value_or(0)) ? withReferenceName(layer, block) : layer;
}

CStdStrW layerOfInnermostReference(const vds_name picked, const resbuf* containers)
{
    if (!containers)
        return layerOf(picked);
    vds_name innermost = {};
    GetFirstNameInBuf(containers, innermost);
    const CStdStrW block = blockOf(innermost);
    const std::optional<int> flags = flagsOfBlock(block);
    if (!flags)
        return layerByReferenceAround(containers);
    return isExternal(*flags) ? withReferenceName(layerOf(picked), block) : layerOf(innermost);
}

CStdStrW layerOfOutermostReference(const vds_name picked, const resbuf* containers)
{
    vds_name outermost = {};
    return GetLastNameInBuf(containers, outermost) == RTNORM ? layerOf(outermost) : layerOf(picked);
}

CStdStrW layerMeant(const vds_name picked, const resbuf* containers)
{
    switch (nOp) {
    case 1:
        return ownLayer(picked, containers);
    case 2:
        return layerOfInnermostReference(picked, containers);
    default:
        return layerOfOutermostReference(picked, containers);
    }
}

enum class Next { PickAgain, Leave };

int optionsPrompt()
{
    switch (nOp) {
    case 1:
        return 2259;
    case 2:
        return 2258;
    default:
        return 2257;
    }
}

void setModeByLetter(wchar_t letter)
{
    switch (letter) {
    case L'E':
    case L'e':
        nOp = 1;
        break;
    case L'B':
    case L'b':
        nOp = 2;
        break;
    case L'N':
    case L'n':
        nOp = 3;
        break;
    default:
        break;
    }
}

Next askOptions()
{
    int status = RTERROR;
    wchar_t reply[512] = {};
    while (status == RTERROR) {
        vcedInitGet(kAnyText, StringFromID(2255));
        status = vcedGetKword(StringFromID(optionsPrompt()), reply);
    }
    if (status == RTCAN)
        return Next::Leave;
    if (status == RTNORM)
        setModeByLetter(*reply);
    return Next::PickAgain;
}

Next followKeyword()
{
    wchar_t word[512] = {};
    vcedGetInput(word);
    if (StrCmpI(word, L"eXit") == 0)
        return Next::Leave;
    return StrCmpI(word, L"Options") == 0 ? askOptions() : Next::PickAgain;
}

bool lastPickMissed() { return shortVariable(L"ERRNO") == kMissed; }

Next turnOff(const vds_name picked, resbuf* containers)
{
    const CStdStrW layer = layerMeant(picked, containers);
    vcutRelRb(containers);
    // An empty name would stand for the current layer.
    if (layer.IsEmpty())
        return Next::PickAgain;
    return OffOneLayer(layer) == RTCAN ? Next::Leave : Next::PickAgain;
}

Next pickAndTurnOff()
{
    vcedInitGet(kAnyText, StringFromID(2254));
    vds_name picked = {};
    vds_point at = {};
    vds_matrix toWorld = {};
    resbuf* containers = nullptr;
    switch (vcedNEntSelP(StringFromID(2256), picked, at, 0, toWorld, &containers)) {
    case RTNORM:
        return turnOff(picked, containers);
    case RTKWORD:
        return followKeyword();
    case RTCAN:
        return Next::Leave;
    default:
        return lastPickMissed() ? Next::PickAgain : Next::Leave;
    }
}

}  // namespace

void LayOff()
{
    CVcModuleResourceOverride resources(hLibModule);
    EchoBracket quiet;
    while (pickAndTurnOff() == Next::PickAgain) {
    }
    vcedRedraw(nullptr, 0);
}
