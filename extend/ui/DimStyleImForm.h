// The form of DIMIM.
#pragma once

#include "qbasedialog.h"

#include <memory>

class CDimStyleIm;

namespace Ui {
class CDimStyleIm;
}

namespace VKUI {

class CDimStyleIm : public QBaseDialog
{
    Q_OBJECT

public:
    CDimStyleIm(QWidget* parent, ::CDimStyleIm* logic);
    ~CDimStyleIm() override;

private slots:
    void OnButtonBrowse();

private:
    std::unique_ptr<Ui::CDimStyleIm> m_ui;
};

}  // namespace VKUI
