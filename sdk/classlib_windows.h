// Windows and controls of the class library. A CWnd stands for a widget of a form; controls are reached by the ids that
// the form has given them. Without a widget a getter gives nothing and a setter does nothing.
#pragma once

#include "classlib_string.h"
#include "system.h"

#include <memory>

class CDataExchange;
class QWidget;

struct RECT {
    LONG left, top, right, bottom;
};

struct CRect : RECT {
    CRect() : RECT{} {}
    LONG Width() const { return right - left; }
    LONG Height() const { return bottom - top; }
};

// A key that is about to reach a control.
struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};

struct VkIcon;
using HICON = const VkIcon*;

enum : UINT {
    WM_CLOSE = 0x10,
    WM_KEYDOWN = 0x100,
    SWP_NOSIZE = 1,
    SWP_NOMOVE = 2,
    SWP_NOZORDER = 4,
};
enum {
    SW_HIDE = 0,
    SW_SHOW = 5,
};

class VK_SDK CWnd {
public:
    CWnd();
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;
    virtual ~CWnd();

    // The object that stands for the widget: the one it was given to, or one that lives as long as the widget.
    static CWnd* FromHandle(HWND handle);
    HWND GetSafeHwnd() const;
    QWidget* Widget() const;
    // Stands for the widget from now on.
    void SetHandle(QWidget* widget);
    // The widget, from which this object is parted.
    QWidget* Detach();
    // Whether the widget goes with this object.
    void SetAutoDelete(bool autoDelete);

    // The controls of a form.
    void SetDlgItem(int id, QWidget* widget);
    // Of the class that fits the widget: CEdit, CListBox, CButton, CComboBox, CStatic; null for an unknown id.
    CWnd* GetDlgItem(int id) const;
    CStdStrW GetDlgItemText(int id) const;
    void SetDlgItemText(int id, const wchar_t* text);
    void CheckDlgButton(int id, int check);
    int IsDlgButtonChecked(int id) const;
    // The checked one of the ids from first to last, or 0.
    int GetCheckedRadioButton(int first, int last) const;
    void CheckRadioButton(int first, int last, int checked);

    void SetWindowTextW(const wchar_t* text);
    CStdStrW GetWindowTextW() const;
    void GetWindowTextW(CStdStrW& text) const { text = GetWindowTextW(); }
    int GetWindowTextLengthW() const { return GetWindowTextW().GetLength(); }

    // True when it was disabled before.
    bool EnableWindow(bool enable = true);
    bool IsWindowEnabled() const;
    bool ShowWindow(int command);
    bool IsWindowVisible() const;
    void SetFocus();
    void Invalidate(bool erase = true);
    void GetWindowRect(RECT* rect) const;
    bool SetWindowPos(const CWnd* after, int x, int y, int width, int height, UINT flags);
    void SetIcon(HICON icon, bool big);
    CWnd* GetParent() const;
    int MessageBoxW(const wchar_t* text, const wchar_t* title = nullptr, UINT style = MB_OK);

    // Moves values from the controls to the members, or to the controls; false when a value was refused.
    bool UpdateData(bool fromControls = true);

    virtual void DoDataExchange(CDataExchange* exchange);
    // The widget has just been given.
    virtual void PreSubclassWindow();
    // True keeps the key from the control.
    virtual bool PreTranslateMessage(MSG* message);
    // The window's own close button.
    virtual void OnClose();

private:
    struct Inner;
    std::unique_ptr<Inner> m_inner;
};

class VK_SDK CStatic : public CWnd {
public:
    ~CStatic() override;
};

class VK_SDK CButton : public CWnd {
public:
    ~CButton() override;
    int GetCheck() const;
    void SetCheck(int check);
};

class VK_SDK CEdit : public CWnd {
public:
    ~CEdit() override;
    bool SetReadOnly(bool readOnly = true);
    // From and up to a place; -1 as the end means all that follows.
    void SetSel(int from, int to, bool noScroll = false);
    void LimitText(int most);
};

inline constexpr int LB_ERR = -1;
inline constexpr int CB_ERR = -1;

class VK_SDK CListBox : public CWnd {
public:
    ~CListBox() override;

    int GetCount() const;
    // The new index.
    int AddString(const wchar_t* text);
    int InsertString(int index, const wchar_t* text);
    // How many are left.
    int DeleteString(UINT index);
    void ResetContent();

    int GetTextLen(int index) const;
    int GetText(int index, wchar_t* buffer) const;
    void GetText(int index, CStdStrW& text) const;
    // Without regard to case, behind the index and then from the top: the first that begins with the text; the one
    // that is the text.
    int FindString(int after, const wchar_t* text) const;
    int FindStringExact(int after, const wchar_t* text) const;

    void* GetItemDataPtr(int index) const;
    int SetItemDataPtr(int index, void* data);

    // Of lists with one selected item: -1 for none.
    int GetCurSel() const;
    int SetCurSel(int index);
    int SelectString(int after, const wchar_t* text);
    // Of lists with any number of them. An index of -1 means all.
    int GetSel(int index) const;
    int SetSel(int index, bool select = true);
    int GetSelCount() const;
    int GetSelItems(int most, int* indexes) const;
};

class VK_SDK CComboBox : public CWnd {
public:
    ~CComboBox() override;
    int GetCount() const;
    int AddString(const wchar_t* text);
    void ResetContent();
    int GetCurSel() const;
    int SetCurSel(int index);
    void GetLBText(int index, CStdStrW& text) const;
    int FindStringExact(int after, const wchar_t* text) const;
};
