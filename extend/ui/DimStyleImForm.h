// The form of DIMIM.
#pragma once

#include "ui/DimStyleForm.h"

#include <memory>

class CDimStyleIm;

namespace Ui {
class CDimStyleIm;
}

namespace VKUI {

class CDimStyleIm : public DimStyleForm {
    Q_OBJECT

public:
    CDimStyleIm(QWidget* parent, ::CDimStyleIm* logic);
    ~CDimStyleIm() override;

private:
    void OnButtonBrowse() override;

    std::unique_ptr<Ui::CDimStyleIm> m_ui;
};

}  // namespace VKUI
