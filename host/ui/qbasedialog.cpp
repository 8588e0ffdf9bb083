#include "sdk/qbasedialog.h"

#include "host/ui/icons.h"
#include "host/ui/qt_application.h"
#include "sdk/classlib_dialogs.h"

#include <QApplication>
#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>

namespace {

// The form of a command stands over the program's window.
QWidget* parentOrMain(QWidget* parent)
{
    vk::ui::ensureApplication();
    return parent ? parent : vk::ui::mainWindow();
}

constexpr std::pair<int, int> kNamedKeys[] = {
    {Qt::Key_Escape, VK_ESCAPE}, {Qt::Key_Return, 0x0D}, {Qt::Key_Enter, 0x0D},     {Qt::Key_Tab, 0x09},
    {Qt::Key_Delete, 0x2E},      {Qt::Key_F1, 0x70},     {Qt::Key_Backspace, 0x08}, {Qt::Key_Space, 0x20},
};

// Letters and digits have one number in both systems.
int systemKey(int key)
{
    for (const auto& [qt, system] : kNamedKeys)
        if (key == qt)
            return system;
    return key < 0x100 ? key : 0;
}

}

QBaseDialog::QBaseDialog(QWidget* parent, CDialog* logic) : QDialog(parentOrMain(parent)), m_logic(logic)
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowIcon(vk::ui::qtIcon(vk::ui::programIcon()));
    QCoreApplication::instance()->installEventFilter(this);
}

QBaseDialog::~QBaseDialog() = default;

void QBaseDialog::OnOK()
{
    if (m_logic)
        m_logic->OnOK();
    else
        QDialog::accept();
}

void QBaseDialog::OnCancel()
{
    if (m_logic)
        m_logic->OnCancel();
    else
        QDialog::reject();
}

void QBaseDialog::accept() { OnOK(); }

void QBaseDialog::reject() { OnCancel(); }

void QBaseDialog::closeEvent(QCloseEvent* event)
{
    if (!m_logic || !isVisible()) {
        QDialog::closeEvent(event);
        return;
    }
    m_logic->OnClose();
    event->setAccepted(!isVisible());
}

bool QBaseDialog::eventFilter(QObject* watched, QEvent* event)
{
    auto* widget = event->type() == QEvent::KeyPress ? qobject_cast<QWidget*>(watched) : nullptr;
    if (!widget || !m_logic || widget->window() != this)
        return QDialog::eventFilter(watched, event);
    MSG message = {widget, WM_KEYDOWN, WPARAM(systemKey(static_cast<QKeyEvent*>(event)->key())), 0};
    return m_logic->PreTranslateMessage(&message);
}
