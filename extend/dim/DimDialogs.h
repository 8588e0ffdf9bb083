// What the dialogs of DIMEX and DIMIM have in common.
#pragma once

#include "classlib_string.h"

class CDialog;

// Their controls.
enum DimDialogControl : int {
    kBrowseButton = 2002,
    kFileEdit = 2003,
    kStyleList = 2004,
    kFirstOption = 2005,
    kSecondOption = 2006,
    kStaticText = 2007,
};

// The drawing's name with the ending of a style file; a name without an ending stays as it is.
CStdStrW dimFileName();
// Switches the radio button of an option on.
void checkOption(CDialog& dialog, int option);
int checkedOption(const CDialog& dialog);
// Asks for a file; false when the person cancels.
bool browseForDimFile(CDialog& dialog, bool forOpening, const CStdStrW& offered, CStdStrW& path);
