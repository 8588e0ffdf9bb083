// CListBox over QListWidget. What a program changes is not told as a change by hand: signals are held back.

#include "sdk/classlib_windows.h"

#include "host/ui/widget_text.h"

#include <QListWidget>
#include <QSignalBlocker>

using vk::ui::fromWide;

namespace {

constexpr int kDataRole = Qt::UserRole;

QListWidget* listOf(const CWnd& window) { return qobject_cast<QListWidget*>(window.Widget()); }

QListWidgetItem* itemOf(const CWnd& window, int index)
{
    const QListWidget* list = listOf(window);
    return list ? list->item(index) : nullptr;
}

// Behind the index and then from the top.
template <class Matches>
int findFrom(const QListWidget* list, int after, Matches matches)
{
    const int count = list ? list->count() : 0;
    const int start = after < 0 || after >= count ? 0 : after + 1;
    for (int i = 0; i < count; ++i) {
        const int index = (start + i) % count;
        if (matches(list->item(index)->text()))
            return index;
    }
    return LB_ERR;
}

void setAllSelected(QListWidget& list, bool select)
{
    if (select)
        list.selectAll();
    else
        list.clearSelection();
}

}

CListBox::~CListBox() = default;

int CListBox::GetCount() const { return listOf(*this) ? listOf(*this)->count() : LB_ERR; }

int CListBox::AddString(const wchar_t* text) { return InsertString(-1, text); }

int CListBox::InsertString(int index, const wchar_t* text)
{
    QListWidget* list = listOf(*this);
    if (!list || index > list->count())
        return LB_ERR;
    const QSignalBlocker quiet(list);
    const int row = index < 0 ? list->count() : index;
    list->insertItem(row, fromWide(text));
    return row;
}

int CListBox::DeleteString(UINT index)
{
    QListWidget* list = listOf(*this);
    if (!itemOf(*this, int(index)))
        return LB_ERR;
    const QSignalBlocker quiet(list);
    delete list->takeItem(int(index));
    return list->count();
}

void CListBox::ResetContent()
{
    if (QListWidget* list = listOf(*this)) {
        const QSignalBlocker quiet(list);
        list->clear();
    }
}

int CListBox::GetTextLen(int index) const
{
    const QListWidgetItem* item = itemOf(*this, index);
    return item ? int(item->text().toStdWString().size()) : LB_ERR;
}

int CListBox::GetText(int index, wchar_t* buffer) const
{
    const QListWidgetItem* item = itemOf(*this, index);
    if (!item)
        return LB_ERR;
    const std::wstring text = item->text().toStdWString();
    text.copy(buffer, text.size());
    buffer[text.size()] = L'\0';
    return int(text.size());
}

void CListBox::GetText(int index, CStdStrW& text) const
{
    const QListWidgetItem* item = itemOf(*this, index);
    text = item ? CStdStrW(item->text().toStdWString()) : CStdStrW();
}

int CListBox::FindString(int after, const wchar_t* text) const
{
    const QString wanted = fromWide(text);
    return findFrom(listOf(*this), after,
                    [&](const QString& item) { return item.startsWith(wanted, Qt::CaseInsensitive); });
}

int CListBox::FindStringExact(int after, const wchar_t* text) const
{
    const QString wanted = fromWide(text);
    return findFrom(listOf(*this), after,
                    [&](const QString& item) { return item.compare(wanted, Qt::CaseInsensitive) == 0; });
}

void* CListBox::GetItemDataPtr(int index) const
{
    const QListWidgetItem* item = itemOf(*this, index);
    return item ? item->data(kDataRole).value<void*>() : nullptr;
}

int CListBox::SetItemDataPtr(int index, void* data)
{
    QListWidgetItem* item = itemOf(*this, index);
    if (!item)
        return LB_ERR;
    const QSignalBlocker quiet(listOf(*this));
    item->setData(kDataRole, QVariant::fromValue(data));
    return index;
}

int CListBox::GetCurSel() const
{
    const QListWidget* list = listOf(*this);
    const int row = list ? list->currentRow() : LB_ERR;
    return row >= 0 && list->item(row)->isSelected() ? row : LB_ERR;
}

int CListBox::SetCurSel(int index)
{
    QListWidget* list = listOf(*this);
    if (!list || index >= list->count())
        return LB_ERR;
    const QSignalBlocker quiet(list);
    if (index < 0)
        list->clearSelection();
    else
        list->setCurrentRow(index, QItemSelectionModel::ClearAndSelect);
    return index < 0 ? LB_ERR : index;
}

int CListBox::SelectString(int after, const wchar_t* text)
{
    const int index = FindString(after, text);
    return index == LB_ERR ? LB_ERR : SetCurSel(index);
}

int CListBox::GetSel(int index) const
{
    const QListWidgetItem* item = itemOf(*this, index);
    return item ? item->isSelected() : LB_ERR;
}

int CListBox::SetSel(int index, bool select)
{
    QListWidget* list = listOf(*this);
    if (!list)
        return LB_ERR;
    const QSignalBlocker quiet(list);
    if (index == -1) {
        setAllSelected(*list, select);
        return 0;
    }
    QListWidgetItem* item = list->item(index);
    if (!item)
        return LB_ERR;
    item->setSelected(select);
    return 0;
}

int CListBox::GetSelCount() const
{
    const QListWidget* list = listOf(*this);
    return list ? list->selectedItems().size() : LB_ERR;
}

int CListBox::GetSelItems(int most, int* indexes) const
{
    const QListWidget* list = listOf(*this);
    int count = 0;
    for (int i = 0; list && i < list->count() && count < most; ++i)
        if (list->item(i)->isSelected())
            indexes[count++] = i;
    return list ? count : LB_ERR;
}
