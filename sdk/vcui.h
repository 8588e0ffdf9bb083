// What the host's user interface offers to modules: its frame and application, bases of dialogs, ready-made dialogs.
#pragma once

#include "classlib_dialogs.h"

class VcCmColor;

// The frame and the drawing's view stand for no widget where there is no window.
VK_SDK CWnd* vcedGetVkadFrame();
VK_SDK CWnd* vcedGetVkadDwgView();
VK_SDK CWinApp* vcedGetVkadWinApp();

// Told what becomes of dialogs; there is none without a window.
class VkMainAppService {
public:
    virtual ~VkMainAppService() = default;
    virtual void dialogCancelled() = 0;
};
VK_SDK VkMainAppService* vekadMainAppService();

// A dialog of the host's own look.
class VK_SDK CVcUiDialog : public CDialog {
public:
    explicit CVcUiDialog(UINT templateId = 0, CWnd* parent = nullptr, HINSTANCE resources = nullptr);
    ~CVcUiDialog() override;
};

// A dialog that lets the person pick in the drawing: between the two calls it is hidden, and questions are asked.
class VK_SDK CVdUiDialog : public CVcUiDialog {
public:
    explicit CVdUiDialog(UINT templateId = 0, CWnd* parent = nullptr, HINSTANCE resources = nullptr);
    ~CVdUiDialog() override;

    bool BeginEditorCommand();
    // The dialog is back as it was.
    bool CompleteEditorCommand(bool restoreFocus = true);
    bool IsInEditorCommand() const { return m_isHidden; }

private:
    bool m_isHidden = false;
};

// Asks for the path of a file: RTNORM and the path, or RTCAN. Extensions are those of the file types offered, "svf;scr".
// With FILEDIA 0 it is asked for at the command line.
enum {
    kFileNavSave = 1,
};
VK_SDK int vcedGetFileNavDialog(const wchar_t* title, const wchar_t* preset, const wchar_t* extensions, int flags,
                                CStdStrW& pathOut);

// The colour dialog over the palette: 0 by block, 256 by layer, both only when allowed. False when it was cancelled. Beside
// vcedSetColorDialog of vced.h, which is the same.
VK_SDK bool vcedSetColor(int* colour, bool allowByLayer, int currentLayerColour);
// The same with true colours.
VK_SDK bool vcedSetColorDialog(VcCmColor& colour, bool allowByLayer, int currentLayerColour);
