// Dimension style files: each style of a drawing as lines of a name, a blank and a value, its text style behind DIMTXSTY.
//
// Writing and reading are not mirror images. DIMALTRND is never written, a vertical text style is written as a horizontal
// one, and a value of "." always means that the group is left out. Files that others have written rely on all of it.
//
// Lines keep their newlines; one that the writer made may hold several. Statuses are RTNORM and RTERROR.
#pragma once

#include "classlib_arrays.h"
#include "resbuf.h"

#include <vector>

// The lines of one style.
class CStringArray2 : public CStringArray {};

enum TextStyleOption : int {
    kTextStyleNameOnly = 0,
    kTextStyleInFull = 1,
};
enum ImportOption : int {
    kKeepExisting = 0,
    kOverwriteExisting = 1,
};

// Writing. What goes wrong with a style or with the file has no words: the result is RTNORM all the same.
int OutDimStyle(const CStringArray& names, const wchar_t* path, int textStyleOption);
int GetNameValueFromStyle(CStringArray& lines, const wchar_t* name, int textStyleOption);
// The section behind DIMTXSTY. The number is not looked at.
int InsertTxtVariable(CStringArray& lines, int unused, const wchar_t* textStyle, int textStyleOption);
int GetTxtVariableFromStyle(CStringArray& lines, resbuf* textStyle);
// 1 when the file could be opened, else 0.
int WriteDimStyle(const CStringArray& lines, const wchar_t* path);

// Reading. A style that fails ends the import; the ones before it stay.
int InDimStyle(const wchar_t* path, int& importOption);
// A style without an end at the end of the file is dropped.
int ReadDimStyleFile(std::vector<CStringArray2>& styles, const wchar_t* path);
int MakeAllDimStyle(const std::vector<CStringArray2>& styles, int importOption);
int MakeDimStyle(const CStringArray& lines, int importOption);
// Makes the text style that the lines name, or brings one that exists up to what they say.
int MakeNewTxtStyle(const CStringArray& lines, CStdStrW& nameOut);
int ModiftyTxtStyle(const wchar_t* textStyle, const CStringArray& lines);
// Gives the node the value that the lines have for it, if they have one.
int modifyDimVariable(resbuf* node, const CStringArray& lines, int selector);
// One node of what the line says; null for ".", for unknown names and for what no plain value can say.
resbuf* MakeBuffer(const wchar_t* line, int selector);

// Lines. The name ends at the first blank, the value is all behind it; without a blank both stay as they were.
int GetNameValueFromTxt(CStdStrW& name, CStdStrW& value, const wchar_t* line);
// The first line that contains the text, or -1.
int GetIndex(const CStringArray& lines, const wchar_t* text);
// From the first line that contains the name anywhere.
int GetValueFromName(CStdStrW& value, const wchar_t* name, const CStringArray& lines);

// Records by name.
int GetEntnameFromName(vds_name nameOut, const wchar_t* textStyle);
int GetEntnameFromBlockName(vds_name nameOut, const wchar_t* block);
bool dimStyTblsearch(const wchar_t* name, vds_name nameOut);
bool txtStyTblsearch(const wchar_t* name, vds_name nameOut);
