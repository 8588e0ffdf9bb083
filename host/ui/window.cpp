#include "sdk/classlib_windows.h"

#include "host/ui/icons.h"
#include "host/ui/qt_application.h"
#include "host/ui/widget_text.h"
#include "sdk/classlib_dialogs.h"
#include "sdk/qbasedialog.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <map>

using vk::ui::fromWide;

struct CWnd::Inner {
    QPointer<QWidget> widget;
    bool autoDelete = false;
    std::map<int, QPointer<QWidget>> items;
};

namespace {

// Who stands for a widget: an object that was given to it, or one of ours that goes with the widget. Never destroyed, as
// windows in statics come here when the program ends.
using Windows = QHash<QWidget*, CWnd*>;

Windows& given()
{
    static auto& windows = *new Windows;
    return windows;
}

Windows& temporary()
{
    static auto& windows = *new Windows;
    return windows;
}

std::unique_ptr<CWnd> newWindowFor(QWidget* widget)
{
    if (qobject_cast<QListWidget*>(widget))
        return std::make_unique<CListBox>();
    if (qobject_cast<QLineEdit*>(widget) || qobject_cast<QPlainTextEdit*>(widget) || qobject_cast<QTextEdit*>(widget))
        return std::make_unique<CEdit>();
    if (qobject_cast<QAbstractButton*>(widget))
        return std::make_unique<CButton>();
    if (qobject_cast<QComboBox*>(widget))
        return std::make_unique<CComboBox>();
    if (qobject_cast<QLabel*>(widget))
        return std::make_unique<CStatic>();
    return std::make_unique<CWnd>();
}

CWnd* makeTemporary(QWidget* widget)
{
    CWnd* window = newWindowFor(widget).release();
    window->SetHandle(widget);
    given().remove(widget);
    temporary().insert(widget, window);
    QObject::connect(widget, &QObject::destroyed, [widget] { delete temporary().take(widget); });
    return window;
}

// The logic may be half gone: no signal of the widgets reaches it any more.
void silence(QWidget& widget)
{
    if (auto* form = qobject_cast<QBaseDialog*>(&widget))
        form->forgetLogic();
    widget.blockSignals(true);
    for (QObject* child : widget.findChildren<QObject*>())
        child->blockSignals(true);
}

}

CWnd::CWnd() : m_inner(std::make_unique<Inner>()) {}

CWnd::~CWnd()
{
    QWidget* widget = Detach();
    if (!widget || !m_inner->autoDelete)
        return;
    silence(*widget);
    delete temporary().take(widget);
    delete widget;
}

CWnd* CWnd::FromHandle(HWND handle)
{
    auto* widget = static_cast<QWidget*>(handle);
    if (!widget)
        return nullptr;
    if (CWnd* window = given().value(widget))
        return window;
    CWnd* window = temporary().value(widget);
    return window ? window : makeTemporary(widget);
}

HWND CWnd::GetSafeHwnd() const { return Widget(); }

QWidget* CWnd::Widget() const { return m_inner->widget; }

void CWnd::SetHandle(QWidget* widget)
{
    Detach();
    m_inner->widget = widget;
    if (!widget)
        return;
    given().insert(widget, this);
    QObject::connect(widget, &QObject::destroyed, [widget, self = this] {
        if (given().value(widget) == self)
            given().remove(widget);
    });
    PreSubclassWindow();
}

QWidget* CWnd::Detach()
{
    QWidget* widget = Widget();
    if (given().value(widget) == this)
        given().remove(widget);
    m_inner->widget = nullptr;
    return widget;
}

void CWnd::SetAutoDelete(bool autoDelete) { m_inner->autoDelete = autoDelete; }

void CWnd::SetDlgItem(int id, QWidget* widget) { m_inner->items[id] = widget; }

CWnd* CWnd::GetDlgItem(int id) const
{
    const auto found = m_inner->items.find(id);
    return found == m_inner->items.end() ? nullptr : FromHandle(found->second.data());
}

CStdStrW CWnd::GetDlgItemText(int id) const
{
    const CWnd* item = GetDlgItem(id);
    return item ? item->GetWindowTextW() : CStdStrW();
}

void CWnd::SetDlgItemText(int id, const wchar_t* text)
{
    if (CWnd* item = GetDlgItem(id))
        item->SetWindowTextW(text);
}

void CWnd::CheckDlgButton(int id, int check)
{
    CWnd* item = GetDlgItem(id);
    if (auto* button = qobject_cast<QAbstractButton*>(item ? item->Widget() : nullptr))
        button->setChecked(check != 0);
}

int CWnd::IsDlgButtonChecked(int id) const
{
    const CWnd* item = GetDlgItem(id);
    const auto* button = qobject_cast<QAbstractButton*>(item ? item->Widget() : nullptr);
    return button && button->isChecked();
}

int CWnd::GetCheckedRadioButton(int first, int last) const
{
    for (int id = first; id <= last; ++id)
        if (IsDlgButtonChecked(id))
            return id;
    return 0;
}

void CWnd::CheckRadioButton(int first, int last, int checked)
{
    for (int id = first; id <= last; ++id)
        CheckDlgButton(id, id == checked);
}

void CWnd::SetWindowTextW(const wchar_t* text)
{
    if (QWidget* widget = Widget())
        vk::ui::setTextOf(*widget, fromWide(text));
}

CStdStrW CWnd::GetWindowTextW() const
{
    const QWidget* widget = Widget();
    return widget ? CStdStrW(vk::ui::textOf(*widget).toStdWString()) : CStdStrW();
}

bool CWnd::EnableWindow(bool enable)
{
    QWidget* widget = Widget();
    const bool wasDisabled = widget && !widget->isEnabled();
    if (widget)
        widget->setEnabled(enable);
    return wasDisabled;
}

bool CWnd::IsWindowEnabled() const { return Widget() && Widget()->isEnabled(); }

bool CWnd::ShowWindow(int command)
{
    QWidget* widget = Widget();
    const bool wasVisible = widget && widget->isVisible();
    if (widget)
        widget->setVisible(command != SW_HIDE);
    return wasVisible;
}

bool CWnd::IsWindowVisible() const { return Widget() && Widget()->isVisible(); }

void CWnd::SetFocus()
{
    if (Widget())
        Widget()->setFocus();
}

void CWnd::Invalidate(bool)
{
    if (Widget())
        Widget()->update();
}

void CWnd::GetWindowRect(RECT* rect) const
{
    const QWidget* widget = Widget();
    if (!widget || !rect)
        return;
    const QPoint origin = widget->isWindow() ? widget->pos() : widget->mapToGlobal(QPoint());
    *rect = {origin.x(), origin.y(), origin.x() + widget->width(), origin.y() + widget->height()};
}

bool CWnd::SetWindowPos(const CWnd*, int x, int y, int width, int height, UINT flags)
{
    QWidget* widget = Widget();
    if (!widget)
        return false;
    if (!(flags & SWP_NOMOVE))
        widget->move(x, y);
    if (!(flags & SWP_NOSIZE))
        widget->resize(width, height);
    return true;
}

void CWnd::SetIcon(HICON icon, bool)
{
    if (Widget() && icon)
        Widget()->setWindowIcon(vk::ui::qtIcon(icon));
}

CWnd* CWnd::GetParent() const { return Widget() ? FromHandle(Widget()->parentWidget()) : nullptr; }

int CWnd::MessageBoxW(const wchar_t* text, const wchar_t* title, UINT style)
{
    return ::MessageBoxW(GetSafeHwnd(), text, title ? title : L"vekad", style);
}

bool CWnd::UpdateData(bool fromControls)
{
    CDataExchange exchange(this, fromControls);
    DoDataExchange(&exchange);
    return !exchange.HasFailed();
}

void CWnd::DoDataExchange(CDataExchange*) {}
void CWnd::PreSubclassWindow() {}
bool CWnd::PreTranslateMessage(MSG*) { return false; }
void CWnd::OnClose() {}
