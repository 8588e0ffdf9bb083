// The form of DIMEX.
#pragma once

#include "qbasedialog.h"

#include <memory>

class CDimStyleEx;

namespace Ui {
class CDimStyleEx;
}

namespace VKUI {

class CDimStyleEx : public QBaseDialog
{
    Q_OBJECT

public:
    CDimStyleEx(QWidget* parent, ::CDimStyleEx* logic);
    ~CDimStyleEx() override;

private slots:
    void OnButtonBrowse();
    void OnSelchangeListStyle();

private:
    std::unique_ptr<Ui::CDimStyleEx> m_ui;
};

}  // namespace VKUI
