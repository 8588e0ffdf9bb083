// The drawing's list of annotation scales: the dictionary that keeps it, its defaults, and what of it may go.
//
// Keys of the dictionary are a letter and a digit in the order of the list, A0 to Z9. They repeat beyond 260 scales, and
// a later scale then takes the place of the one that has its key. Whoever changes the list writes all of it anew.
#pragma once

#include "classlib_string.h"
#include "vcdb_objects.h"
#include "vcstring.h"

#include <memory>
#include <vector>

// A row of the dialog.
struct ScaleInfo {
    CStdStrW key;
    CStdStrW name;
    double paperUnits = 0;
    double drawingUnits = 0;
    VcDbObjectId id;
};

// A row of the command line.
struct ScaleListInfo {
    VcString key;
    VcString name;
    double paperUnits = 0;
    double drawingUnits = 0;
    VcDbObjectId id;
};
using ScaleList = VcArray<ScaleListInfo>;
using ScaleNames = VcArray<VcString>;

// The keys of a list, one after the other.
class ScaleKeys {
public:
    CStdStrW next();

private:
    wchar_t m_letter = L'A';
    wchar_t m_digit = L'0';
};

// The dictionary open for write, made when the drawing has none; null when it cannot be reached. The caller closes it.
VcDbDictionary* createOrGetScaleListDictionary();
VcDbDictionary* createOrGetScaleListDict();

struct CloseObject {
    void operator()(VcDbObject* object) const { object->close(); }
};
using OpenScaleList = std::unique_ptr<VcDbDictionary, CloseObject>;

// The scales of the dictionary in its order.
std::vector<ScaleInfo> scalesOf(const VcDbDictionary& dictionary);
void removeAllScales(VcDbDictionary& dictionary);
// Puts the scale under its key and tells its new id; false when it is refused, and then nothing comes of it. The flag says
// that a scale is the one of full size, and only the first of the metric defaults carries it.
bool putScale(VcDbDictionary& dictionary, ScaleInfo& scale, bool isUnitScale = false);

// Fills a dictionary that has no entry at all with the defaults for MEASUREMENT, so that they never mix with a list of
// the person's own.
void initializeScales();
// The defaults in place of all there is.
void resetScaleList(ScaleList& list);
// Writes the list, to which a scale has been added. Rows get their new keys and ids.
void addNewScale(ScaleList& list);
void getScaleListInfo(ScaleList& list);

// The scales that viewports name, each once.
void getUsedScaleList(ScaleNames& names);
bool isUsed(const ScaleNames& used, const wchar_t* name);
// The scale of full size.
bool isFullSize(const wchar_t* name);
