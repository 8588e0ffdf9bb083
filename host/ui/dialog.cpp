#include "host/ui/modal.h"
#include "sdk/vcui.h"

#include <QDialog>

CDialog::CDialog(UINT templateId, CWnd*) : m_templateId(templateId) {}

CDialog::~CDialog() = default;

int CDialog::DoModal()
{
    auto* form = qobject_cast<QDialog*>(Widget());
    if (!form)
        return -1;
    m_result = IDCANCEL;
    m_running = true;
    OnInitDialog();
    if (m_running)
        vk::ui::runModal(*form, this);
    m_running = false;
    return m_result;
}

void CDialog::EndDialog(int result)
{
    m_result = result;
    m_running = false;
    if (auto* form = qobject_cast<QDialog*>(Widget()))
        form->done(result);
}

bool CDialog::OnInitDialog()
{
    UpdateData(false);
    return true;
}

void CDialog::OnOK()
{
    if (UpdateData(true))
        EndDialog(IDOK);
}

void CDialog::OnCancel() { EndDialog(IDCANCEL); }

void CDialog::OnClose() { OnCancel(); }

CVcUiDialog::CVcUiDialog(UINT templateId, CWnd* parent, HINSTANCE) : CDialog(templateId, parent) {}

CVcUiDialog::~CVcUiDialog() = default;

CVdUiDialog::CVdUiDialog(UINT templateId, CWnd* parent, HINSTANCE resources)
    : CVcUiDialog(templateId, parent, resources)
{
}

CVdUiDialog::~CVdUiDialog() = default;

bool CVdUiDialog::BeginEditorCommand()
{
    QWidget* form = Widget();
    if (!form || m_isHidden)
        return false;
    m_isHidden = true;
    form->hide();
    return true;
}

bool CVdUiDialog::CompleteEditorCommand(bool restoreFocus)
{
    QWidget* form = Widget();
    if (!form || !m_isHidden)
        return false;
    m_isHidden = false;
    form->show();
    if (restoreFocus)
        form->activateWindow();
    return true;
}
