// A drawing database.
#pragma once

#include "vcdb_object.h"

class VcDbBlockTable;
class VcDbDictionary;
class VcDbDimStyleTable;
class VcDbEntity;
class VcDbIdMapping;
class VcDbLayerTable;
class VcDbLinetypeTable;
class VcDbRegAppTable;
class VcDbTextStyleTable;
class VcDbUCSTable;
class VcDbViewTable;
class VcDbViewportTable;

class VK_SDK VcDbDatabase : public VcRxObject {
    VCRX_DECLARE(VcDbDatabase)
public:
    // With buildDefault the drawing has its tables, layer "0", the standard styles, both spaces and the usual dictionaries;
    // without, it is empty and only readDwgFile makes sense of it.
    explicit VcDbDatabase(bool buildDefault = true, bool noDocument = false);
    ~VcDbDatabase() override;
    VcDbDatabase(const VcDbDatabase&) = delete;
    VcDbDatabase& operator=(const VcDbDatabase&) = delete;

    // Reads a drawing, DWG or DXF by content, into this database, which must have been made without defaults.
    Vcad::ErrorStatus readDwgFile(const wchar_t* file, int shareMode = 0, bool allowCodePageConversion = false,
                                  const wchar_t* password = nullptr);
    Vcad::ErrorStatus saveAs(const wchar_t* file);

    Vcad::ErrorStatus getSymbolTable(VcDbBlockTable*& table, VcDb::OpenMode mode = VcDb::kForRead);
    Vcad::ErrorStatus getSymbolTable(VcDbLayerTable*& table, VcDb::OpenMode mode = VcDb::kForRead);
    Vcad::ErrorStatus getSymbolTable(VcDbTextStyleTable*& table, VcDb::OpenMode mode = VcDb::kForRead);
    Vcad::ErrorStatus getSymbolTable(VcDbLinetypeTable*& table, VcDb::OpenMode mode = VcDb::kForRead);
    Vcad::ErrorStatus getSymbolTable(VcDbDimStyleTable*& table, VcDb::OpenMode mode = VcDb::kForRead);
    Vcad::ErrorStatus getSymbolTable(VcDbRegAppTable*& table, VcDb::OpenMode mode = VcDb::kForRead);
    Vcad::ErrorStatus getSymbolTable(VcDbViewTable*& table, VcDb::OpenMode mode = VcDb::kForRead);
    Vcad::ErrorStatus getSymbolTable(VcDbViewportTable*& table, VcDb::OpenMode mode = VcDb::kForRead);
    Vcad::ErrorStatus getSymbolTable(VcDbUCSTable*& table, VcDb::OpenMode mode = VcDb::kForRead);

    VcDbObjectId blockTableId() const;
    VcDbObjectId layerTableId() const;
    VcDbObjectId textStyleTableId() const;
    VcDbObjectId linetypeTableId() const;
    VcDbObjectId dimStyleTableId() const;
    VcDbObjectId regAppTableId() const;
    VcDbObjectId viewTableId() const;
    VcDbObjectId viewportTableId() const;
    VcDbObjectId UCSTableId() const;

    VcDbObjectId namedObjectsDictionaryId() const;
    Vcad::ErrorStatus getNamedObjectsDictionary(VcDbDictionary*& dictionary, VcDb::OpenMode mode = VcDb::kForRead);
    Vcad::ErrorStatus getGroupDictionary(VcDbDictionary*& dictionary, VcDb::OpenMode mode = VcDb::kForRead);

    VcDbObjectId currentSpaceId() const;  // block table record of the space that new entities go to
    VcDbObjectId clayer() const;
    VcDbObjectId textstyle() const;
    VcDbObjectId dimstyle() const;
    Vcad::ErrorStatus setClayer(VcDbObjectId layer);

    // Copies objects with all they own under a new owner, across databases too, and translates their references.
    // Records of symbol tables that they need come along, those of the same name staying as they are.
    Vcad::ErrorStatus deepCloneObjects(const VcDbObjectIdArray& ids, VcDbObjectId owner, VcDbIdMapping& mapping,
                                       bool deferTranslation = false);
    // Takes out of the list what is still referred to; what remains may be erased.
    Vcad::ErrorStatus purge(VcDbObjectIdArray& ids);
    // Viewports of the layouts, in their order; with includeOverall also the one that is the sheet itself.
    VcDbObjectIdArray getViewportArray(bool includeOverall = true) const;

    DatabaseCore& core() { return *m_core; }
    const DatabaseCore& core() const { return *m_core; }

private:
    std::unique_ptr<DatabaseCore> m_core;
};

// What became of each cloned object.
class VK_SDK VcDbIdPair {
public:
    VcDbIdPair() = default;
    VcDbIdPair(VcDbObjectId key, VcDbObjectId value, bool cloned = false) : m_key(key), m_value(value), m_cloned(cloned)
    {
    }
    VcDbObjectId key() const { return m_key; }
    VcDbObjectId value() const { return m_value; }
    bool isCloned() const { return m_cloned; }
    bool isPrimary() const { return m_primary; }
    void setKey(VcDbObjectId id) { m_key = id; }
    void setValue(VcDbObjectId id) { m_value = id; }
    void setCloned(bool b) { m_cloned = b; }
    void setPrimary(bool b) { m_primary = b; }

private:
    VcDbObjectId m_key, m_value;
    bool m_cloned = false, m_primary = false;
};

class VK_SDK VcDbIdMapping {
public:
    VcDbIdMapping();
    ~VcDbIdMapping();
    VcDbIdMapping(const VcDbIdMapping&) = delete;
    VcDbIdMapping& operator=(const VcDbIdMapping&) = delete;
    bool assign(const VcDbIdPair& pair);
    // Fills in the value of the pair's key; false if the key is not mapped.
    bool compute(VcDbIdPair& pair) const;
    const std::vector<VcDbIdPair>& pairs() const;

private:
    struct Index;
    std::unique_ptr<Index> m_index;
};

class VK_SDK VcDbIdMappingIter {
public:
    explicit VcDbIdMappingIter(const VcDbIdMapping& mapping) : m_mapping(&mapping) {}
    void start() { m_at = 0; }
    bool next() { return ++m_at < m_mapping->pairs().size(); }
    bool done() const { return m_at >= m_mapping->pairs().size(); }
    bool getMap(VcDbIdPair& pair) const
    {
        if (done())
            return false;
        pair = m_mapping->pairs()[m_at];
        return true;
    }

private:
    const VcDbIdMapping* m_mapping;
    std::size_t m_at = 0;
};
