// SCALELISTEDIT.
#include "core/Handlers.h"
#include "core/Extend_Mpd.h"
#include "scale/ScaleListEditDlg.h"

void cmd_scaleListEdit()
{
    CVcModuleResourceOverride resources(hLibModule);
    CDlg_ScaleListEdit dialog(nullptr);
    if (dialog.DoModal() == kPickViewports)
        dialog.OnBnClickedSetViewport();
}
