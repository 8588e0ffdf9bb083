#include "sdk/classlib_dialogs.h"

#include "host/base/unicode.h"
#include "host/ui/widget_text.h"

#include <QLocale>
#include <QWidget>

namespace {

// The control of this pass, or null when the pass has failed already.
CWnd* itemFor(CDataExchange* exchange, int id)
{
    exchange->m_lastId = id;
    return exchange->HasFailed() ? nullptr : exchange->m_pDlgWnd->GetDlgItem(id);
}

QString textOfItem(const CWnd& item) { return QString::fromStdWString(item.GetWindowTextW().str()).trimmed(); }

void refuse(CDataExchange* exchange, int id, const wchar_t* message)
{
    exchange->m_pDlgWnd->MessageBoxW(message, nullptr, MB_ICONEXCLAMATION);
    exchange->Fail(id);
}

template <class Number>
void exchangeNumber(CDataExchange* exchange, int id, Number& value,
                    Number (QLocale::*parse)(const QString&, bool*) const, const wchar_t* whenNone)
{
    CWnd* item = itemFor(exchange, id);
    if (!item)
        return;
    if (!exchange->m_bSaveAndValidate) {
        item->SetWindowTextW(QString::number(value).toStdWString().c_str());
        return;
    }
    bool isNumber = false;
    const Number number = (QLocale::c().*parse)(textOfItem(*item), &isNumber);
    if (isNumber)
        value = number;
    else
        refuse(exchange, id, whenNone);
}

}

void CDataExchange::Fail(int id)
{
    m_failed = true;
    if (CWnd* item = m_pDlgWnd->GetDlgItem(id))
        item->SetFocus();
}

void DDX_Control(CDataExchange* exchange, int id, CWnd& control)
{
    CWnd* item = itemFor(exchange, id);
    if (item && !control.Widget())
        control.SetHandle(item->Widget());
}

void DDX_Text(CDataExchange* exchange, int id, CStdStrW& value)
{
    CWnd* item = itemFor(exchange, id);
    if (!item)
        return;
    if (exchange->m_bSaveAndValidate)
        value = item->GetWindowTextW();
    else
        item->SetWindowTextW(value);
}

void DDX_Text(CDataExchange* exchange, int id, int& value)
{
    exchangeNumber<int>(exchange, id, value, &QLocale::toInt, L"Enter a whole number.");
}

void DDX_Text(CDataExchange* exchange, int id, double& value)
{
    exchangeNumber<double>(exchange, id, value, &QLocale::toDouble, L"Enter a number.");
}

void DDX_Check(CDataExchange* exchange, int id, int& value)
{
    if (!itemFor(exchange, id))
        return;
    if (exchange->m_bSaveAndValidate)
        value = exchange->m_pDlgWnd->IsDlgButtonChecked(id);
    else
        exchange->m_pDlgWnd->CheckDlgButton(id, value);
}

void DDX_Check(CDataExchange* exchange, int id, bool& value)
{
    int check = value;
    DDX_Check(exchange, id, check);
    value = check != 0;
}

void DDV_MaxChars(CDataExchange* exchange, const CStdStrW& value, int most)
{
    const int id = exchange->m_lastId;
    CWnd* item = itemFor(exchange, id);
    if (!item)
        return;
    if (!exchange->m_bSaveAndValidate) {
        static_cast<void>(item->Widget()->setProperty("maxLength", most));
    } else if (value.GetLength() > most) {
        const std::wstring message = L"Enter no more than " + std::to_wstring(most) + L" characters.";
        refuse(exchange, id, message.c_str());
    }
}
