// The CLASSES section: the file's own records, and those that objects made since need.
#include "host/db/kept_object.h"
#include "host/io/downgrade.h"

#include <string_view>
#include <unordered_set>

namespace {

struct ClassRow {
    const char* dxfName;
    const char* cppName;
    const char* application;
    std::int32_t proxyFlags;
    bool isEntity;
};

constexpr const char* kCommon = "ObjectDBX Classes";

constexpr ClassRow kClassRows[] = {
    {"ACAD_TABLE", "AcDbTable", kCommon, 1025, true},
    {"ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault", kCommon, 0, false},
    {"ACDBPLACEHOLDER", "AcDbPlaceHolder", kCommon, 0, false},
    {"ARC_DIMENSION", "AcDbArcDimension", kCommon, 1025, true},
    {"DGNDEFINITION", "AcDbDgnDefinition", kCommon, 1153, false},
    {"DGNUNDERLAY", "AcDbDgnReference", kCommon, 4095, true},
    {"DICTIONARYVAR", "AcDbDictionaryVar", kCommon, 0, false},
    {"DWFDEFINITION", "AcDbDwfDefinition", kCommon, 1153, false},
    {"DWFUNDERLAY", "AcDbDwfReference", kCommon, 4095, true},
    {"HELIX", "AcDbHelix", kCommon, 4095, true},
    {"IMAGE", "AcDbRasterImage", "ISM", 127, true},
    {"IMAGEDEF", "AcDbRasterImageDef", "ISM", 0, false},
    {"IMAGEDEF_REACTOR", "AcDbRasterImageDefReactor", "ISM", 1, false},
    {"LARGE_RADIAL_DIMENSION", "AcDbRadialDimensionLarge", kCommon, 1025, true},
    {"LAYOUT", "AcDbLayout", kCommon, 0, false},
    {"MESH", "AcDbSubDMesh", kCommon, 0, true},
    {"MULTILEADER", "AcDbMLeader", "ACDB_MLEADER_CLASS", 1025, true},
    {"PDFDEFINITION", "AcDbPdfDefinition", kCommon, 1153, false},
    {"PDFUNDERLAY", "AcDbPdfReference", kCommon, 4095, true},
    {"RASTERVARIABLES", "AcDbRasterVariables", "ISM", 0, false},
    {"SCALE", "AcDbScale", kCommon, 1153, false},
    {"SORTENTSTABLE", "AcDbSortentsTable", kCommon, 0, false},
    {"WIPEOUT", "AcDbWipeout", "WipeOut", 2175, true},
    {"WIPEOUTVARIABLES", "AcDbWipeoutVariables", "WipeOut", 0, false},
};

// Group 0 of every class that a live object of the drawing has.
std::unordered_set<std::string_view> namesInUse(const DatabaseCore& db)
{
    std::unordered_set<std::string_view> names;
    const VcRxClass* last = nullptr;
    for (std::uint32_t slot = 1; slot < db.slotCount(); ++slot) {
        const VcDbObject* object = db.objectAt(slot);
        if (!object || object->isErased() || object->isA() == last)
            continue;
        last = object->isA();
        names.insert(dxfNameOf(*object));
    }
    return names;
}

}

std::vector<ClassRecord> classesToWrite(const DatabaseCore& db, DxfVersion version)
{
    std::vector<ClassRecord> all = db.classes;
    std::unordered_set<std::string_view> known;
    for (const ClassRecord& c : db.classes)
        known.insert(c.dxfName);
    const auto used = namesInUse(db);
    for (const ClassRow& row : kClassRows) {
        if (!used.contains(row.dxfName) || known.contains(row.dxfName))
            continue;
        ClassRecord made;
        made.dxfName = row.dxfName;
        made.cppName = row.cppName;
        made.application = row.application;
        made.proxyFlags = row.proxyFlags;
        made.isEntity = row.isEntity;
        made.hasCount = version >= DxfVersion::R2004;
        made.instanceCount = 1;
        all.push_back(std::move(made));
    }
    return all;
}
