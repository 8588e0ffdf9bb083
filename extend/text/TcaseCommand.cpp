// TCASE.

#include "core/ExtendUtils.h"
#include "text/TcaseDlg.h"
#include "text/VkExtendTextToolCtx.h"
#include "vced.h"
#include "vcui.h"
#include "vcut.h"

namespace {

int SelectCase(vds_name selection)
{
    resbuf* filter = vcutBuildList(-4, L"<or", -4, L"<and", RTDXF0, L"TEXT", -4, L"and>", -4, L"<and", RTDXF0, L"MTEXT",
                                   -4, L"and>", -4, L"<and", RTDXF0, L"ATTDEF", -4, L"and>", -4, L"or>", RTNONE);
    const int status = vcedSSGet(nullptr, nullptr, nullptr, filter, selection);
    vcutRelRb(filter);
    return status;
}

}  // namespace

int CVkExtendTextToolCtx::cmd_TCASE()
{
    CVcModuleResourceOverride resources(hLibModule);
    vcutPrintf(L"%s", StringFromID(2621));
    vds_name selection = {};
    const int status = SelectCase(selection);
    if (status != RTNORM) {
        vcutPrintf(L"%s", StringFromID(2623));
        return status;
    }
    TcaseDlg(vcedGetVkadFrame(), selection).DoModal();
    vcedSSFree(selection);
    return status;
}
