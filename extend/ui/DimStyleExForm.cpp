#include "ui/DimStyleExForm.h"

#include "dim/DimDialogs.h"
#include "dim/DimStyleEx.h"
#include "ui_CDimStyleEx.h"

namespace VKUI {

CDimStyleEx::CDimStyleEx(QWidget* parent, ::CDimStyleEx* logic)
    : DimStyleForm(parent, logic), m_ui(std::make_unique<Ui::CDimStyleEx>())
{
    m_ui->setupUi(this);
    setUp(*logic, {.file = m_ui->lEditExportFileName,
                   .browse = m_ui->pBtnExportFileName,
                   .firstOption = m_ui->rBtnTextStyleNameOnly,
                   .secondOption = m_ui->rBtnFullTextStyleInformation,
                   .ok = m_ui->pBtnOK,
                   .cancel = m_ui->pBtnCancel});
    connect(m_ui->listWidget, SIGNAL(itemSelectionChanged()), this, SLOT(OnSelchangeListStyle()));
    logic->SetDlgItem(kStyleList, m_ui->listWidget);
}

CDimStyleEx::~CDimStyleEx() = default;

void CDimStyleEx::OnButtonBrowse() { forward(&::CDimStyleEx::OnButtonBrowse); }
void CDimStyleEx::OnSelchangeListStyle() { forward(&::CDimStyleEx::OnSelchangeListStyle); }

}  // namespace VKUI
