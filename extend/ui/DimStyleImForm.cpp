#include "ui/DimStyleImForm.h"

#include "dim/DimStyleIm.h"
#include "ui_CDimStyleIm.h"

namespace VKUI {

CDimStyleIm::CDimStyleIm(QWidget* parent, ::CDimStyleIm* logic)
    : DimStyleForm(parent, logic), m_ui(std::make_unique<Ui::CDimStyleIm>())
{
    m_ui->setupUi(this);
    setUp(*logic, {.file = m_ui->lEditImportFilenname,
                   .browse = m_ui->pBtnBrowse,
                   .firstOption = m_ui->rBtnKeepExistingStyle,
                   .secondOption = m_ui->rBtnOverwriteExistingStyle,
                   .ok = m_ui->pBtnOK,
                   .cancel = m_ui->pBtnCancel});
}

CDimStyleIm::~CDimStyleIm() = default;

void CDimStyleIm::OnButtonBrowse() { forward(&::CDimStyleIm::OnButtonBrowse); }

}  // namespace VKUI
