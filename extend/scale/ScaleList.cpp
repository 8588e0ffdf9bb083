#include "scale/ScaleList.h"

#include "vcdb_viewport.h"
#include "vced.h"
#include "vchost.h"
#include "vcut.h"

#include <algorithm>
#include <span>

namespace {

struct DefaultScale {
    const wchar_t* name;
    double paperUnits;
    double drawingUnits;
};

constexpr DefaultScale kMetricScales[] = {
    {L"1:1", 1, 1},   {L"1:2", 1, 2},   {L"1:4", 1, 4},   {L"1:5", 1, 5},   {L"1:8", 1, 8},     {L"1:10", 1, 10},
    {L"1:16", 1, 16}, {L"1:20", 1, 20}, {L"1:30", 1, 30}, {L"1:40", 1, 40}, {L"1:50", 1, 50},   {L"1:100", 1, 100},
    {L"2:1", 2, 1},   {L"4:1", 4, 1},   {L"8:1", 8, 1},   {L"10:1", 10, 1}, {L"100:1", 100, 1},
};

// Inches on paper to a foot. The last of them is of full size as well, but does not say so.
constexpr DefaultScale kImperialScales[] = {
    {L"1/128\" = 1'-0\"", 0.0078125, 12}, {L"1/64\" = 1'-0\"", 0.015625, 12}, {L"1/32\" = 1'-0\"", 0.03125, 12},
    {L"1/16\" = 1'-0\"", 0.0625, 12},     {L"3/32\" = 1'-0\"", 0.09375, 12},  {L"1/8\" = 1'-0\"", 0.125, 12},
    {L"3/16\" = 1'-0\"", 0.1875, 12},     {L"1/4\" = 1'-0\"", 0.25, 12},      {L"3/8\" = 1'-0\"", 0.375, 12},
    {L"1/2\" = 1'-0\"", 0.5, 12},         {L"3/4\" = 1'-0\"", 0.75, 12},      {L"1\" = 1'-0\"", 1, 12},
    {L"1-1/2\" = 1'-0\"", 1.5, 12},       {L"3\" = 1'-0\"", 3, 12},           {L"6\" = 1'-0\"", 6, 12},
    {L"1'-0\" = 1'-0\"", 12, 12},
};

constexpr short kMetric = 1;
constexpr const wchar_t* kDictionaryName = L"ACAD_SCALELIST";
constexpr const wchar_t* kFullSize = L"1:1";

std::span<const DefaultScale> defaultScales()
{
    resbuf measurement = {};
    vcedGetVar(L"MEASUREMENT", &measurement);
    if (measurement.resval.rint == kMetric)
        return kMetricScales;
    return kImperialScales;
}

VcDbDictionary* makeScaleList(VcDbDictionary& root)
{
    auto made = std::make_unique<VcDbDictionary>();
    VcDbObjectId id;
    return root.setAt(kDictionaryName, made.get(), id) == Vcad::eOk ? made.release() : nullptr;
}

// The defaults behind what the dictionary holds; those that it took.
std::vector<ScaleInfo> putDefaults(VcDbDictionary& dictionary)
{
    std::vector<ScaleInfo> taken;
    ScaleKeys keys;
    const std::span<const DefaultScale> defaults = defaultScales();
    for (const DefaultScale& row : defaults) {
        ScaleInfo scale{keys.next(), row.name, row.paperUnits, row.drawingUnits, {}};
        if (putScale(dictionary, scale, &row == std::begin(kMetricScales)))
            taken.push_back(scale);
    }
    return taken;
}

ScaleListInfo rowOf(const ScaleInfo& scale)
{
    return {scale.key.GetString(), scale.name.GetString(), scale.paperUnits, scale.drawingUnits, scale.id};
}

void addName(const VcDbAnnotationScale& scale, ScaleNames& names)
{
    wchar_t* name = nullptr;
    if (scale.getName(name) != Vcad::eOk)
        return;
    if (!isUsed(names, name))
        names.append(name);
    vcutDelString(name);
}

}  // namespace

CStdStrW ScaleKeys::next()
{
    if (m_digit > L'9') {
        ++m_letter;
        m_digit = L'0';
    }
    if (m_letter > L'Z')
        m_letter = L'A';
    CStdStrW key;
    key.Format(L"%c%c", m_letter, m_digit);
    ++m_digit;
    return key;
}

VcDbDictionary* createOrGetScaleListDictionary()
{
    VcDbDatabase* drawing = vcdbHostApplicationServices()->workingDatabase();
    VcDbDictionary* root = nullptr;
    if (!drawing || drawing->getNamedObjectsDictionary(root, VcDb::kForWrite) != Vcad::eOk)
        return nullptr;
    const OpenScaleList closesRoot(root);
    VcDbObjectId id;
    root->getAt(kDictionaryName, id);
    if (!id.isValid())
        return makeScaleList(*root);
    VcDbDictionary* list = nullptr;
    vcdbOpenObject(list, id, VcDb::kForWrite);
    return list;
}

VcDbDictionary* createOrGetScaleListDict() { return createOrGetScaleListDictionary(); }

std::vector<ScaleInfo> scalesOf(const VcDbDictionary& dictionary)
{
    std::vector<ScaleInfo> scales;
    const std::unique_ptr<VcDbDictionaryIterator> at(dictionary.newIterator());
    for (; !at->done(); at->next()) {
        VcDbScale* scale = nullptr;
        if (vcdbOpenObject(scale, at->objectId(), VcDb::kForRead) != Vcad::eOk)
            continue;
        wchar_t* name = scale->scaleName();
        scales.push_back({at->name(), name, scale->paperUnits(), scale->drawingUnits(), at->objectId()});
        vcutDelString(name);
        scale->close();
    }
    return scales;
}

void removeAllScales(VcDbDictionary& dictionary)
{
    std::vector<CStdStrW> keys;
    const std::unique_ptr<VcDbDictionaryIterator> at(dictionary.newIterator());
    for (; !at->done(); at->next())
        keys.emplace_back(at->name());
    for (const CStdStrW& key : keys)
        dictionary.remove(key);
}

bool putScale(VcDbDictionary& dictionary, ScaleInfo& scale, bool isUnitScale)
{
    auto made = std::make_unique<VcDbScale>();
    made->setScaleName(scale.name);
    made->setPaperUnits(scale.paperUnits);
    made->setDrawingUnits(scale.drawingUnits);
    made->setIsUnitScale(isUnitScale);
    if (dictionary.setAt(scale.key, made.get(), scale.id) != Vcad::eOk)
        return false;
    made.release()->close();
    return true;
}

void initializeScales()
{
    const OpenScaleList dictionary(createOrGetScaleListDictionary());
    if (dictionary && dictionary->numEntries() == 0)
        putDefaults(*dictionary);
}

void resetScaleList(ScaleList& list)
{
    const OpenScaleList dictionary(createOrGetScaleListDict());
    if (!dictionary)
        return;
    removeAllScales(*dictionary);
    list.removeAll();
    for (const ScaleInfo& scale : putDefaults(*dictionary))
        list.append(rowOf(scale));
}

// Scales beyond those of the defaults have no flag of full size, not even the one that had it before.
void addNewScale(ScaleList& list)
{
    const OpenScaleList dictionary(createOrGetScaleListDict());
    if (!dictionary)
        return;
    removeAllScales(*dictionary);
    ScaleKeys keys;
    for (ScaleListInfo& row : list) {
        ScaleInfo scale{keys.next(), row.name.kwszPtr(), row.paperUnits, row.drawingUnits, {}};
        if (!putScale(*dictionary, scale))
            continue;
        row.key = scale.key;
        row.id = scale.id;
    }
}

void getScaleListInfo(ScaleList& list)
{
    const OpenScaleList dictionary(createOrGetScaleListDict());
    if (!dictionary)
        return;
    for (const ScaleInfo& scale : scalesOf(*dictionary))
        list.append(rowOf(scale));
}

void getUsedScaleList(ScaleNames& names)
{
    names.removeAll();
    const VcDbDatabase* drawing = vcdbHostApplicationServices()->workingDatabase();
    if (!drawing)
        return;
    for (const VcDbObjectId id : drawing->getViewportArray(true)) {
        VcDbViewport* viewport = nullptr;
        if (vcdbOpenObject(viewport, id, VcDb::kForRead) != Vcad::eOk)
            continue;
        if (const VcDbAnnotationScale* scale = viewport->annotationScale())
            addName(*scale, names);
        viewport->close();
    }
}

bool isUsed(const ScaleNames& used, const wchar_t* name)
{
    return std::any_of(used.begin(), used.end(), [&](const VcString& one) { return one.compareNoCase(name) == 0; });
}

bool isFullSize(const wchar_t* name) { return VcString(name).compareNoCase(kFullSize) == 0; }
