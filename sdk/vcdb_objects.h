// Objects that are not seen themselves: dictionaries and what they hold.
#pragma once

#include "vccm.h"
#include "vcdb_object.h"
#include "vcdb_rare.h"
#include "vcge.h"

#include <string>
#include <string_view>
#include <utility>

class TagList;
class VcDbBlockTableRecord;
class VcDbDictionaryIterator;
class VcDbEntity;
class VcDbGroupIterator;

// Named objects in order. Names differ without regard to case. An entry whose object is erased is as good as gone, and
// comes back with it. Changes of entries are journalled one by one.
class VK_SDK VcDbDictionary : public VcDbObject {
    VCDB_DECLARE(VcDbDictionary)
public:
    VcDbDictionary();
    VcDbDictionary(const VcDbDictionary&);
    VcDbDictionary& operator=(const VcDbDictionary&);
    ~VcDbDictionary() override;

    Vcad::ErrorStatus getAt(const wchar_t* name, VcDbObjectId& id) const;
    Vcad::ErrorStatus getAt(const wchar_t* name, VcDbObject*& object, VcDb::OpenMode mode = VcDb::kForRead) const;
    bool has(const wchar_t* name) const;
    bool has(VcDbObjectId id) const;
    // The copy belongs to the caller (vcutDelString).
    Vcad::ErrorStatus nameAt(VcDbObjectId id, wchar_t*& name) const;
    std::uint32_t numEntries() const;
    // Takes over a new object, which stays open for write and is closed by the caller; on failure it stays the caller's.
    // An object of the drawing that has no owner is taken as well.
    // An object that stood under the name is erased.
    Vcad::ErrorStatus setAt(const wchar_t* name, VcDbObject* object, VcDbObjectId& id);
    // Take the entry out. The object stays, without an owner, until it is put under another name; it is not saved.
    Vcad::ErrorStatus remove(const wchar_t* name);
    Vcad::ErrorStatus remove(const wchar_t* name, VcDbObjectId& id);
    Vcad::ErrorStatus remove(VcDbObjectId id);
    // Renames an entry in its place; false if there is none or the new name is taken.
    bool setName(const wchar_t* oldName, const wchar_t* newName);
    // The caller deletes it. Entries may come and go meanwhile.
    VcDbDictionaryIterator* newIterator() const;

    // Whether the dictionary owns what it holds for good, so that its objects are saved and kept from a purge.
    bool isTreatElementsAsHard() const { return m_hard; }
    void setTreatElementsAsHard(bool hard);
    std::int16_t mergeStyle() const { return m_mergeStyle; }
    Vcad::ErrorStatus setMergeStyle(std::int16_t style);

    // Host side.
    VcDbObjectId find(std::string_view name) const;
    std::string nameOf(VcDbObjectId id) const;
    // Puts an id under the name, at the end unless the name is there. Objects are left alone.
    void setAtUtf8(std::string_view name, VcDbObjectId id);
    bool removeUtf8(std::string_view name);
    // Entries that are to be saved: not those of erased objects.
    std::vector<std::pair<std::string, VcDbObjectId>> liveEntries() const;
    void fields(FieldVisitor& visitor) override;
    void eraseOwned(bool erasing) override;

private:
    friend class VcDbDictionaryIterator;
    struct Entry;
    struct Entries;
    class EntryChange;

    bool isThere(const Entry& entry) const;
    bool isErasedEntry(const Entry& entry) const;
    std::size_t positionOf(std::string_view name) const;
    std::size_t positionOf(VcDbObjectId id) const;
    void exchange(std::size_t position, Entry& other);
    void change(std::size_t position, Entry entry);
    void append(Entry entry);
    void put(Entry entry);
    void takeOver(std::vector<Entry> read);
    void entryFields(FieldVisitor& visitor);

    std::unique_ptr<Entries> m_entries;
    std::int16_t m_mergeStyle = 1;
    bool m_hard = false;
};

// Answers with its default for names that it does not have.
class VK_SDK VcDbDictionaryWithDefault : public VcDbDictionary {
    VCDB_DECLARE(VcDbDictionaryWithDefault)
public:
    VcDbObjectId defaultId() const { return m_default; }
    Vcad::ErrorStatus setDefaultId(VcDbObjectId id);
    void fields(FieldVisitor& visitor) override;

private:
    VcDbObjectId m_default;
};

class VK_SDK VcDbDictionaryIterator {
public:
    explicit VcDbDictionaryIterator(const VcDbDictionary& dictionary);
    // Valid until the next call.
    const wchar_t* name() const;
    VcDbObjectId objectId() const;
    Vcad::ErrorStatus getObject(VcDbObject*& object, VcDb::OpenMode mode = VcDb::kForRead) const;
    bool done() const;
    bool next();
    bool setPosition(VcDbObjectId id);

private:
    const VcDbDictionary* dictionary() const;
    void skip();
    VcDbObjectId m_dictionary;
    std::size_t m_at = 0;
    VcDbWideText m_name;
};

// Data of an application: groups of any kind.
class VK_SDK VcDbXrecord : public VcDbObject {
    VCDB_DECLARE(VcDbXrecord)
public:
    VcDbXrecord();
    VcDbXrecord(const VcDbXrecord&);
    VcDbXrecord& operator=(const VcDbXrecord&);
    ~VcDbXrecord() override;

    // Replaces the data. Codes are 1 to 369 without 5, 100 and 105; another one is refused.
    Vcad::ErrorStatus setFromRbChain(const resbuf& chain, VcDbDatabase* database = nullptr);
    // A new chain, null when there is no data; the caller releases it.
    Vcad::ErrorStatus rbChain(resbuf** chain, VcDbDatabase* database = nullptr) const;
    std::int16_t mergeStyle() const { return m_mergeStyle; }
    Vcad::ErrorStatus setMergeStyle(std::int16_t style);

    // Host side.
    const TagList& data() const { return *m_data; }
    void setData(TagList data);
    void fields(FieldVisitor& visitor) override;

private:
    std::unique_ptr<TagList> m_data;
    std::int16_t m_mergeStyle = 1;
};

// A named, ordered set of entities. Erased members are kept for the case that they come back, and do not count.
class VK_SDK VcDbGroup : public VcDbObject {
    VCDB_DECLARE(VcDbGroup)
public:
    Vcad::ErrorStatus append(VcDbObjectId id);
    Vcad::ErrorStatus append(const VcDbObjectIdArray& ids);
    Vcad::ErrorStatus remove(VcDbObjectId id);
    Vcad::ErrorStatus clear();
    bool has(const VcDbEntity* entity) const;
    bool has(VcDbObjectId id) const;
    std::uint32_t numEntities() const;
    std::uint32_t allEntityIds(VcDbObjectIdArray& ids) const;
    VcDbGroupIterator* newIterator() const;

    bool isAnonymous() const { return m_anonymous; }
    // Gives it the next free name of the form *A1 in its dictionary.
    Vcad::ErrorStatus setAnonymous();
    bool isSelectable() const { return m_selectable; }
    Vcad::ErrorStatus setSelectable(bool selectable);
    wchar_t* description() const;
    Vcad::ErrorStatus setDescription(const wchar_t* text);
    wchar_t* getName() const;
    Vcad::ErrorStatus setName(const wchar_t* name);

    // Host side.
    const std::vector<VcDbObjectId>& members() const { return m_members; }
    const std::string& descriptionUtf8() const { return m_description; }
    std::string nameUtf8() const;
    void fields(FieldVisitor& visitor) override;

private:
    Vcad::ErrorStatus appendNew(VcDbObjectId id);
    std::string m_description;
    std::vector<VcDbObjectId> m_members;
    bool m_anonymous = false, m_selectable = true;
};

// Walks the live members of a group; the caller deletes it.
class VK_SDK VcDbGroupIterator : public VcDbObjectIterator {
public:
    using VcDbObjectIterator::VcDbObjectIterator;
    bool next()
    {
        step();
        return !done();
    }
    Vcad::ErrorStatus getObject(VcDbObject*& object, VcDb::OpenMode mode = VcDb::kForRead) const;
};

// A ratio of paper to drawing units under a name.
class VK_SDK VcDbScale : public VcDbObject {
    VCDB_DECLARE(VcDbScale)
public:
    wchar_t* scaleName() const;
    Vcad::ErrorStatus setScaleName(const wchar_t* name);
    double paperUnits() const { return m_paperUnits; }
    Vcad::ErrorStatus setPaperUnits(double units);  // above 0
    double drawingUnits() const { return m_drawingUnits; }
    Vcad::ErrorStatus setDrawingUnits(double units);  // above 0
    double scale() const { return m_paperUnits / m_drawingUnits; }
    bool isUnitScale() const { return m_unit; }
    Vcad::ErrorStatus setIsUnitScale(bool unit);
    bool isTemporaryScale() const { return (m_flags & 1) != 0; }

    // Host side.
    const std::string& nameUtf8() const { return m_name; }
    void set(std::string nameUtf8, double paperUnits, double drawingUnits, bool unit);
    void fields(FieldVisitor& visitor) override;

private:
    std::string m_name;
    double m_paperUnits = 1, m_drawingUnits = 1;
    std::int16_t m_flags = 0;
    bool m_unit = false;
};

// Offsets, colours and ends of parallel lines.
class VK_SDK VcDbMlineStyle : public VcDbObject {
    VCDB_DECLARE(VcDbMlineStyle)
public:
    enum Flag : std::int16_t {
        kFilled = 1,
        kMitres = 2,
        kStartSquareCap = 16,
        kStartInnerArcs = 32,
        kStartRoundCap = 64,
        kEndSquareCap = 256,
        kEndInnerArcs = 512,
        kEndRoundCap = 1024,
    };
    struct Element {
        double offset = 0;
        VcCmColor color;
        VcDbObjectId linetype;
    };
    wchar_t* name() const;
    Vcad::ErrorStatus setName(const wchar_t* name);
    wchar_t* description() const;
    Vcad::ErrorStatus setDescription(const wchar_t* text);
    double startAngle() const { return m_startAngle; }
    Vcad::ErrorStatus setStartAngle(double radians);  // 10 to 170 degrees
    double endAngle() const { return m_endAngle; }
    Vcad::ErrorStatus setEndAngle(double radians);
    int numElements() const { return int(m_elements.size()); }

    // Host side.
    const std::string& nameUtf8() const { return m_name; }
    const std::vector<Element>& elements() const { return m_elements; }
    void setElements(std::vector<Element> elements);
    std::int16_t flags() const { return m_flags; }
    const VcCmColor& fillColor() const { return m_fill; }
    void fields(FieldVisitor& visitor) override;

private:
    void linetypeField(FieldVisitor& visitor, VcDbObjectId& linetype);
    std::string m_name, m_description;
    std::vector<Element> m_elements;
    double m_startAngle = 1.57079632679489661923, m_endAngle = 1.57079632679489661923;
    VcCmColor m_fill;
    std::int16_t m_flags = 0;
};

// The file behind raster images.
class VK_SDK VcDbRasterImageDef : public VcDbObject {
    VCDB_DECLARE(VcDbRasterImageDef)
public:
    wchar_t* sourceFileName() const;
    Vcad::ErrorStatus setSourceFileName(const wchar_t* file);
    VcGeVector2d size() const { return m_size; }             // pixels
    VcGeVector2d resolution() const { return m_pixelSize; }  // millimetres a pixel
    bool isLoaded() const { return m_loaded; }
    enum Units : std::int16_t { kNone = 0, kCentimeter = 2, kInch = 5 };
    Units resolutionUnits() const { return Units(m_units); }

    // Host side.
    const std::string& fileUtf8() const { return m_file; }
    void setImage(const VcGeVector2d& pixels, const VcGeVector2d& pixelSize);
    void fields(FieldVisitor& visitor) override;

private:
    std::string m_file;
    VcGeVector2d m_size, m_pixelSize{1, 1};
    std::int32_t m_classVersion = 0;
    std::int16_t m_units = 0;
    bool m_loaded = true;
};

// Tells an image definition which image uses it.
class VK_SDK VcDbRasterImageDefReactor : public VcDbObject {
    VCDB_DECLARE(VcDbRasterImageDefReactor)
public:
    VcDbObjectId imageId() const { return m_image; }
    void setImageId(VcDbObjectId image);
    void fields(FieldVisitor& visitor) override;

private:
    VcDbObjectId m_image;
    std::int32_t m_classVersion = 2;
};

// How all raster images of a drawing are shown.
class VK_SDK VcDbRasterVariables : public VcDbObject {
    VCDB_DECLARE(VcDbRasterVariables)
public:
    std::int16_t imageFrame() const { return m_frame; }
    Vcad::ErrorStatus setImageFrame(std::int16_t frame);  // 0 none, 1 shown and plotted, 2 shown
    std::int16_t imageQuality() const { return m_quality; }
    Vcad::ErrorStatus setImageQuality(std::int16_t quality);  // 0 draft, 1 high
    std::int16_t userScale() const { return m_units; }
    void fields(FieldVisitor& visitor) override;

private:
    std::int32_t m_classVersion = 0;
    std::int16_t m_frame = 1, m_quality = 1, m_units = 0;
};

class VK_SDK VcDbWipeoutVariables : public VcDbObject {
    VCDB_DECLARE(VcDbWipeoutVariables)
public:
    std::int16_t showFrame() const { return m_frame; }
    Vcad::ErrorStatus setShowFrame(std::int16_t frame);  // 0 none, 1 shown and plotted, 2 shown
    void fields(FieldVisitor& visitor) override;

private:
    std::int16_t m_frame = 0;
};

// The order in which a block's entities are drawn, where it is not that of their handles. An entity is drawn at the place
// of its sort handle: its own, or that of another entity with which it has changed places.
class VK_SDK VcDbSortentsTable : public VcDbObject {
    VCDB_DECLARE(VcDbSortentsTable)
public:
    VcDbObjectId blockId() const { return m_block; }
    void setBlockId(VcDbObjectId block);
    VcDbHandle getSortHandle(VcDbObjectId entity) const;
    // All live entities of the block, lowest first.
    Vcad::ErrorStatus getFullDrawOrder(VcDbObjectIdArray& ids) const;
    // The entities keep their order among themselves; those that are not in the block are refused.
    Vcad::ErrorStatus moveToBottom(const VcDbObjectIdArray& ids);
    Vcad::ErrorStatus moveToTop(const VcDbObjectIdArray& ids);
    Vcad::ErrorStatus moveBelow(const VcDbObjectIdArray& ids, VcDbObjectId target);
    Vcad::ErrorStatus moveAbove(const VcDbObjectIdArray& ids, VcDbObjectId target);

    void fields(FieldVisitor& visitor) override;

private:
    struct Place {
        VcDbObjectId entity, sortHandle;
    };
    enum class Side { Bottom, Below, Above, Top };
    Vcad::ErrorStatus move(const VcDbObjectIdArray& ids, VcDbObjectId target, Side side);
    void setFullDrawOrder(const VcDbObjectIdArray& ids);
    const VcDbBlockTableRecord* block() const;

    VcDbObjectId m_block;
    std::vector<Place> m_places;
};

// A variable of the drawing that its header has no place for.
class VK_SDK VcDbDictionaryVar : public VcDbObject {
    VCDB_DECLARE(VcDbDictionaryVar)
public:
    wchar_t* value() const;
    Vcad::ErrorStatus setValue(const wchar_t* value);
    const std::string& valueUtf8() const { return m_value; }
    void setValueUtf8(std::string value);
    void fields(FieldVisitor& visitor) override;

private:
    std::string m_value;
    std::int16_t m_schema = 0;
};

// Holds a name in a dictionary, such as that of a plot style.
class VK_SDK VcDbPlaceHolder : public VcDbObject {
    VCDB_DECLARE(VcDbPlaceHolder)
};
