// TXT2MTXT, and the dialog of its options.

#include "core/EchoBracket.h"
#include "core/ExtendUtils.h"
#include "core/Handlers.h"
#include "text/DialogTxt2MTxt.h"
#include "text/TextSelection.h"
#include "text/TextToMText.h"
#include "text/VkExtendTextToolCtx.h"
#include "vcdb_chains.h"
#include "vced.h"
#include "vcui.h"
#include "vcut.h"

namespace {

constexpr const wchar_t* kCheckFlag = L"CheckFlag";

struct Joining {
    bool selectionOrder;
    bool wordWrap;
};

// 3 is taken as 0, though the dialog shows it as the opposite in both.
Joining joiningOf(int flag)
{
    switch (flag) {
    case 0:
    case 3:
        return {true, true};
    case 1:
        return {false, true};
    case 2:
        return {true, false};
    default:
        return {false, false};
    }
}

Joining storedJoining()
{
    int flag = 0;
    if (!GetEledimCheckReg(flag, kCheckFlag))
        SetEledimCheckReg(0, kCheckFlag);
    return joiningOf(flag);
}

int selectUntilDone(vds_name set)
{
    int status = selectTexts(2337, TextFilter::TextOnly, set);
    while (status != RTNORM && status != RTCAN)
        status = selectTexts(2337, TextFilter::TextOnly, set);
    return status;
}

int eraseMembers(const vds_name set)
{
    int erased = 0;
    forEachMember(set, [&](vds_name name) { erased += vcdbEntDel(name) == RTNORM; });
    return erased;
}

// 1 when there is one.
int updateLast()
{
    vds_name last = {};
    if (vcdbEntLast(last) != RTNORM)
        return 0;
    vcdbEntUpd(last);
    return 1;
}

}  // namespace

int CVkExtendTextToolCtx::cmd_TXT2MTXT()
{
    CVcModuleResourceOverride resources(hLibModule);
    EchoBracket quiet;
    const Joining joining = storedJoining();
    vds_name set = {};
    const int status = selectUntilDone(set);
    int erased = 0, made = 0;
    if (status == RTNORM && CreateMTextFromTxtSet(joining.selectionOrder, joining.wordWrap, set) == RTNORM) {
        erased = eraseMembers(set);
        made = updateLast();
    }
    vcedSSFree(set);
    vcedRedraw(nullptr, 0);
    vcutPrintf(StringFromID(2626), erased, made);
    vcedRetVoid();
    return status;
}

void TextToMTextOptions()
{
    CVcModuleResourceOverride resources(hLibModule);
    DialogTxt2MTxt(vcedGetVkadFrame()).DoModal();
}
