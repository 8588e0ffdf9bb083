// The form of SCALELISTEDIT.
#pragma once

#include "qbasedialog.h"

#include <memory>

class CDlg_ScaleListEdit;

namespace Ui {
class ScaleListEditDialog;
}

namespace VKUI {

class CDlg_ScaleListEdit : public QBaseDialog {
    Q_OBJECT

public:
    CDlg_ScaleListEdit(QWidget* parent, ::CDlg_ScaleListEdit* logic);
    ~CDlg_ScaleListEdit() override;

private slots:
    void OnLbnSelchangeListScale();
    void OnBnClickedAddOrEdit();
    void OnBnClickedMoveUp();
    void OnBnClickedMoveDown();
    void OnBnClickedDelete();
    void OnBnClickedSort();
    void OnBnClickedSetViewport();
    void OnBnClickedReset();
    void OnBnClickedCancel();
    void OnBnClickedOk();

private:
    void giveControls(::CDlg_ScaleListEdit& logic);

    std::unique_ptr<Ui::ScaleListEditDialog> m_ui;
};

}  // namespace VKUI
