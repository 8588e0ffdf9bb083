#include "dim/DimDialogs.h"

#include "classlib_dialogs.h"
#include "core/PublicFunction.h"

CStdStrW dimFileName()
{
    constexpr std::size_t kSize = 1024;
    wchar_t drawing[kSize] = {};
    get_acad_str_var(L"DWGNAME", drawing, kSize);
    const CStdStrW name = drawing;
    const int dot = name.ReverseFind(L'.');
    return dot < 0 ? name : name.Left(dot) + L".dim";
}

void checkOption(CDialog& dialog, int option)
{
    dialog.CheckRadioButton(kFirstOption, kSecondOption, option == 0 ? kFirstOption : kSecondOption);
}

int checkedOption(const CDialog& dialog)
{
    return dialog.GetCheckedRadioButton(kFirstOption, kSecondOption) == kSecondOption;
}

bool browseForDimFile(CDialog& dialog, bool forOpening, const CStdStrW& offered, CStdStrW& path)
{
    CStdStrW filter;
    filter.LoadStringW(2011);
    const DWORD flags = DWORD(OFN_OVERWRITEPROMPT) | OFN_HIDEREADONLY | (forOpening ? DWORD(OFN_FILEMUSTEXIST) : 0);
    CFileDialog files(forOpening, L"*.dim", offered, flags, filter, &dialog);
    if (files.DoModal() != IDOK)
        return false;
    path = files.GetPathName();
    return true;
}
