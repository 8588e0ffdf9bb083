// The dialog of SYSVDLG: looks through the system variables of the catalogue, changes them, saves and reads their
// values.
#pragma once

#include "classlib_dialogs.h"
#include "classlib_files.h"
#include "sysvar/SysvarFilters.h"

// Controls of the form.
enum SysvarControl {
    kSearchEdit = 2078,
    kNameList,
    kNewValueEdit,
    kCurrentEdit,
    kInitialEdit,
    kSavedInEdit,
    kTypeEdit,
    kDescriptionText,
};

class CDlg_SysVariables : public CDialog {
public:
    explicit CDlg_SysVariables(CWnd* parent = nullptr);
    ~CDlg_SysVariables() override;

    bool OnInitDialog() override;
    void OnCancel() override;
    void DoDataExchange(CDataExchange* exchange) override;

    void OnSelchangeList2();
    void OnChangeEdit1();
    void OnKillFocusEdit2();
    void OnButtonSave();
    void OnButtonRead();

    // The index that is selected at opening.
    void SetPosition(int index) { m_position = index; }
    int GetPosition() const { return m_position; }

    const SysvarArray& Records() const { return m_records; }

    // Takes the live value, and the type from it. False when there is no such variable.
    static bool InitSysvarCurrentAndNewValByName(SysvarData* record);
    // Sets a variable of any type to what was read; a failure goes to the log.
    bool set_acad_int_var(const SysvarData& record, const wchar_t* value);

private:
    void readRecords();
    void showNames();
    // The record of the selected name, -1 for none.
    int selectedRecord() const;
    void show(const SysvarData& record);
    void showNothing();
    CStringArray shownNames() const;
    void applyFilter(const CStdStrW& text);
    void reportReading();
    bool writeLog(const CStdStrW& fileName) const;

    CEdit m_search, m_newValue, m_current, m_initial, m_savedIn, m_type, m_description;
    CListBox m_list;

    CStdStrW m_hostFolder;
    SysvarArray m_records;
    CStdStrW m_readErrors;
    int m_readErrorCount = 0;
    int m_entry = -1;  // the record that is shown
    int m_position = 0;
};
