#include "dim/DimStyleIm.h"

#include "dim/DimDialogs.h"
#include "ui/DimStyleImForm.h"
#include "vced.h"
#include "vcui.h"

namespace {

constexpr UINT kTemplate = 2013;

// A path counts as whole only by its drive letter.
bool hasDrive(const CStdStrW& path) { return path.Find(L":\\") >= 0 || path.Find(L":/") >= 0; }

}  // namespace

CStdStrW G_cAppPath;

CDimStyleIm::CDimStyleIm(CWnd* parent) : CDialog(kTemplate, parent) { new VKUI::CDimStyleIm(nullptr, this); }

CDimStyleIm::~CDimStyleIm() = default;

void CDimStyleIm::DoDataExchange(CDataExchange* exchange)
{
    CDialog::DoDataExchange(exchange);
    DDX_Control(exchange, kFileEdit, m_file);
    DDX_Text(exchange, kFileEdit, m_fileName);
}

bool CDimStyleIm::OnInitDialog()
{
    CDialog::OnInitDialog();
    CheckBox();
    FillFileName();
    return true;
}

void CDimStyleIm::CheckBox() { checkOption(*this, m_importOption); }

void CDimStyleIm::FillFileName()
{
    m_fileName = dimFileName();
    m_file.SetWindowTextW(m_fileName);
}

void CDimStyleIm::OnButtonBrowse()
{
    if (browseForDimFile(*this, true, m_fileName, m_fileName))
        m_file.SetWindowTextW(m_fileName);
}

void CDimStyleIm::OnOK()
{
    UpdateData(true);
    FlashData();
    CDialog::OnOK();
}

void CDimStyleIm::FlashData()
{
    m_importOption = checkedOption(*this);
    m_file.GetWindowTextW(m_fileName);
}

int GetINPara(CStdStrW& path, int& importOption)
{
    CDimStyleIm dialog(vcedGetVkadFrame());
    if (dialog.DoModal() != IDOK)
        return RTERROR;
    path = hasDrive(dialog.FileName()) ? dialog.FileName() : G_cAppPath + dialog.FileName();
    importOption = dialog.Option();
    return RTNORM;
}
