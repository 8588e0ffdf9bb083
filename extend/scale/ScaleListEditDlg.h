// The dialog of SCALELISTEDIT. Edits change the rows of its list; the drawing changes on OK, on Set Viewport and on Reset.
#pragma once

#include "classlib_dialogs.h"
#include "scale/ScaleList.h"

// What the dialog ends with when viewports are to be picked.
inline constexpr int kPickViewports = 46;

// Its controls.
enum ScaleDialogControl : int {
    kScaleList = 6301,
    kNameEdit = 6302,
    kPaperEdit = 6303,
    kDrawingEdit = 6304,
    kAddEditButton = 6305,
    kMoveUpButton = 6306,
    kMoveDownButton = 6307,
    kDeleteButton = 6308,
    kSortButton = 6309,
    kSetViewportButton = 6310,
    kResetButton = 6311,
};

class CDlg_ScaleListEdit : public CDialog {
public:
    explicit CDlg_ScaleListEdit(CWnd* parent = nullptr);
    ~CDlg_ScaleListEdit() override;

    bool OnInitDialog() override;
    void OnOK() override;
    void OnClose() override;
    void DoDataExchange(CDataExchange* exchange) override;

    void OnLbnSelchangeListScale();
    void OnBnClickedAddOrEdit();
    void OnBnClickedMoveUp();
    void OnBnClickedMoveDown();
    void OnBnClickedDelete();
    void OnBnClickedSort();
    void OnBnClickedReset();
    void OnBnClickedOk() { OnOK(); }
    void OnBnClickedCancel() { OnCancel(); }
    // Asks for viewports and gives them the selected scale. Called when the dialog has closed.
    void OnBnClickedSetViewport();

    // Writes the list to the drawing. Rows keep the ids that they were loaded with, though these scales are then gone.
    void save();

private:
    void load();
    void clear();
    void swap(int first, int second);

    int indexOf(const CStdStrW& name) const;
    ScaleInfo* rowAt(int index) const;
    void insertRow(int index, const ScaleInfo& row);
    void deleteRow(int index);
    void deleteAllRows();
    void selectAndShow(int index);

    CListBox m_list;
    CStdStrW m_name;
    CStdStrW m_paperUnits;
    CStdStrW m_drawingUnits;
    VcDbObjectId m_selectedId;
    bool m_sortsUpward = true;
};
