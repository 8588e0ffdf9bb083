#include "sdk/classlib_windows.h"

#include "host/ui/widget_text.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QTextCursor>
#include <QTextEdit>

using vk::ui::fromWide;

namespace {

template <class Text>
void select(Text& edit, int from, int to)
{
    QTextCursor cursor = edit.textCursor();
    const int end = edit.document()->characterCount() - 1;
    cursor.setPosition(qBound(0, from, end));
    cursor.setPosition(to < 0 ? end : qBound(0, to, end), QTextCursor::KeepAnchor);
    edit.setTextCursor(cursor);
}

QComboBox* comboOf(const CWnd& window) { return qobject_cast<QComboBox*>(window.Widget()); }

}

CStatic::~CStatic() = default;
CButton::~CButton() = default;
CEdit::~CEdit() = default;
CComboBox::~CComboBox() = default;

int CButton::GetCheck() const
{
    const auto* button = qobject_cast<QAbstractButton*>(Widget());
    return button && button->isChecked();
}

void CButton::SetCheck(int check)
{
    if (auto* button = qobject_cast<QAbstractButton*>(Widget()))
        button->setChecked(check != 0);
}

bool CEdit::SetReadOnly(bool readOnly)
{
    QWidget* widget = Widget();
    return widget && widget->setProperty("readOnly", readOnly);
}

void CEdit::SetSel(int from, int to, bool)
{
    if (auto* line = qobject_cast<QLineEdit*>(Widget()))
        line->setSelection(from, to < 0 ? line->text().size() - from : to - from);
    else if (auto* plain = qobject_cast<QPlainTextEdit*>(Widget()))
        select(*plain, from, to);
    else if (auto* rich = qobject_cast<QTextEdit*>(Widget()))
        select(*rich, from, to);
}

void CEdit::LimitText(int most)
{
    if (auto* line = qobject_cast<QLineEdit*>(Widget()))
        line->setMaxLength(most);
}

int CComboBox::GetCount() const { return comboOf(*this) ? comboOf(*this)->count() : CB_ERR; }

int CComboBox::AddString(const wchar_t* text)
{
    QComboBox* combo = comboOf(*this);
    if (!combo)
        return CB_ERR;
    const QSignalBlocker quiet(combo);
    combo->addItem(fromWide(text));
    return combo->count() - 1;
}

void CComboBox::ResetContent()
{
    if (QComboBox* combo = comboOf(*this)) {
        const QSignalBlocker quiet(combo);
        combo->clear();
    }
}

int CComboBox::GetCurSel() const { return comboOf(*this) ? comboOf(*this)->currentIndex() : CB_ERR; }

int CComboBox::SetCurSel(int index)
{
    QComboBox* combo = comboOf(*this);
    if (!combo || index >= combo->count())
        return CB_ERR;
    const QSignalBlocker quiet(combo);
    combo->setCurrentIndex(index);
    return index;
}

void CComboBox::GetLBText(int index, CStdStrW& text) const
{
    if (const QComboBox* combo = comboOf(*this))
        text = combo->itemText(index).toStdWString();
}

int CComboBox::FindStringExact(int after, const wchar_t* text) const
{
    const QComboBox* combo = comboOf(*this);
    const int count = combo ? combo->count() : 0;
    for (int i = 1; i <= count; ++i) {
        const int index = (qMax(after, -1) + i) % count;
        if (combo->itemText(index).compare(fromWide(text), Qt::CaseInsensitive) == 0)
            return index;
    }
    return CB_ERR;
}
