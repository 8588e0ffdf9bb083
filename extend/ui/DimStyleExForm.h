// The form of DIMEX.
#pragma once

#include "ui/DimStyleForm.h"

#include <memory>

class CDimStyleEx;

namespace Ui {
class CDimStyleEx;
}

namespace VKUI {

class CDimStyleEx : public DimStyleForm {
    Q_OBJECT

public:
    CDimStyleEx(QWidget* parent, ::CDimStyleEx* logic);
    ~CDimStyleEx() override;

private slots:
    void OnSelchangeListStyle();

private:
    void OnButtonBrowse() override;

    std::unique_ptr<Ui::CDimStyleEx> m_ui;
};

}  // namespace VKUI
