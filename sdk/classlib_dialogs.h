// Dialogs of the class library, the exchange of their data, and the application.
//
// A dialog is two objects: the logic, a CDialog that knows nothing of widgets, and its form, a QBaseDialog (qbasedialog.h)
// that the logic's constructor makes. docs/writing-dialogs.md shows how.
#pragma once

#include "classlib_windows.h"

class VK_SDK CDialog : public CWnd {
public:
    // The number under which the class is known; the parent may be null.
    explicit CDialog(UINT templateId = 0, CWnd* parent = nullptr);
    ~CDialog() override;

    // Shows the form until EndDialog: what it was ended with, IDOK and IDCANCEL among others; -1 without a form.
    virtual int DoModal();
    void EndDialog(int result);
    UINT TemplateId() const { return m_templateId; }

    // Moves the members to the controls. What it gives is not looked at.
    virtual bool OnInitDialog();
    virtual void OnOK();
    virtual void OnCancel();
    void OnClose() override;

private:
    UINT m_templateId;
    int m_result = -1;
    bool m_running = false;
};

// One pass over the controls of a window.
class VK_SDK CDataExchange {
public:
    CDataExchange(CWnd* window, bool fromControls) : m_pDlgWnd(window), m_bSaveAndValidate(fromControls) {}

    // The value of this control is refused: it gets the focus, and the rest of the pass leaves the members as they are.
    void Fail(int id);
    bool HasFailed() const { return m_failed; }

    CWnd* m_pDlgWnd;
    bool m_bSaveAndValidate;
    int m_lastId = 0;  // of the control that was exchanged last

private:
    bool m_failed = false;
};

// The member stands for the control from the first pass on.
VK_SDK void DDX_Control(CDataExchange* exchange, int id, CWnd& control);
VK_SDK void DDX_Text(CDataExchange* exchange, int id, CStdStrW& value);
// A number; what is none is refused.
VK_SDK void DDX_Text(CDataExchange* exchange, int id, int& value);
VK_SDK void DDX_Text(CDataExchange* exchange, int id, double& value);
VK_SDK void DDX_Check(CDataExchange* exchange, int id, int& value);
VK_SDK void DDX_Check(CDataExchange* exchange, int id, bool& value);
// Refuses a longer text; where it can, the control takes no more.
VK_SDK void DDV_MaxChars(CDataExchange* exchange, const CStdStrW& value, int most);

enum : DWORD {
    OFN_OVERWRITEPROMPT = 2,
    OFN_HIDEREADONLY = 4,
    OFN_FILEMUSTEXIST = 0x1000,
};

// Asks for a file, in a window, or at the command line when FILEDIA is 0.
class VK_SDK CFileDialog : public CDialog {
public:
    // The filter is "Name|*.ext;*.other|Name|*.*||".
    explicit CFileDialog(bool forOpening, const wchar_t* defaultExtension = nullptr, const wchar_t* fileName = nullptr,
                         DWORD flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT, const wchar_t* filter = nullptr,
                         CWnd* parent = nullptr);
    ~CFileDialog() override;

    int DoModal() override;
    CStdStrW GetPathName() const { return m_path; }
    CStdStrW GetFileName() const;
    CStdStrW GetFileExt() const;

private:
    bool m_forOpening;
    DWORD m_flags;
    CStdStrW m_extension;
    CStdStrW m_filter;
    CStdStrW m_path;
};

// The host's application object. Settings lie in the current profile, a section each.
class VK_SDK CWinApp {
public:
    virtual ~CWinApp();
    UINT GetProfileInt(const wchar_t* section, const wchar_t* key, int byDefault);
    bool WriteProfileInt(const wchar_t* section, const wchar_t* key, int value);
    CStdStrW GetProfileString(const wchar_t* section, const wchar_t* key, const wchar_t* byDefault = nullptr);
    bool WriteProfileString(const wchar_t* section, const wchar_t* key, const wchar_t* value);
    // The program's own icon stands for a number that has none.
    HICON LoadIcon(UINT id) const;
};

VK_SDK CWinApp* AfxGetApp();
