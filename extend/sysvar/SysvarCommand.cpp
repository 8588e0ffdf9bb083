// SYSVDLG.
#include "core/ExtendUtils.h"
#include "core/Handlers.h"
#include "sysvar/Dlg_SysVariables.h"
#include "sysvar/SysvarValues.h"
#include "vced.h"
#include "vcui.h"

namespace {

void apply(const SysvarData& record)
{
    resbuf value = {};
    if (vcedGetVar(record.name, &value) != RTNORM)
        return;
    if (putNewValue(record, value))
        vcedSetVar(record.name, &value);
    releaseValue(value);
}

void applyChanges(const SysvarArray& records)
{
    for (int i = 0; i < records.GetSize(); ++i) {
        const SysvarData& record = records.GetAt(i);
        if (!record.readOnly && record.current != record.newValue)
            apply(record);
    }
}

}  // namespace

void Sysvdlg()
{
    static int current = 0;
    CVcModuleResourceOverride resources(hLibModule);
    if (current < 0)
        current = 0;
    CDlg_SysVariables dialog(vcedGetVkadFrame());
    dialog.SetPosition(current);
    if (dialog.DoModal() == IDOK)
        applyChanges(dialog.Records());
    vcedRetVoid();
}
