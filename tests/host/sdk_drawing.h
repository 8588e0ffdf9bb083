// A new drawing as a module sees it: through the sdk alone, save for undo and for comparing what objects say.
#pragma once

#include "host/db/database.h"
#include "sdk/vcdb.h"
#include "sdk/vcut.h"
#include "tests/host/db_support.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>

// Takes a string of the host's over and releases it.
inline std::wstring taken(wchar_t* text)
{
    const std::wstring copy = text ? text : L"(null)";
    vcutDelString(text);
    return copy;
}

// An object that is closed again when the guard goes.
template <class T>
class Opened {
public:
    explicit Opened(VcDbObjectId id, VcDb::OpenMode mode = VcDb::kForRead, bool openErased = false)
        : status(vcdbOpenObject(m_object, id, mode, openErased))
    {
    }
    ~Opened()
    {
        if (m_object)
            m_object->close();
    }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    T* operator->() const { return m_object; }
    T& operator*() const { return *m_object; }
    explicit operator bool() const { return m_object != nullptr; }

private:
    T* m_object = nullptr;

public:
    const Vcad::ErrorStatus status;
};

template <class T>
struct Writing : Opened<T> {
    explicit Writing(VcDbObjectId id, bool openErased = false) : Opened<T>(id, VcDb::kForWrite, openErased) {}
};

class SdkDrawing {
public:
    SdkDrawing() { vcdbHostApplicationServices()->setWorkingDatabase(&database); }
    ~SdkDrawing() { vcdbHostApplicationServices()->setWorkingDatabase(nullptr); }

    DatabaseCore& core() { return database.core(); }
    VcDbObjectId modelId() { return database.currentSpaceId(); }

    // Takes the entity over, into a block or the model, and closes it.
    VcDbObjectId add(std::unique_ptr<VcDbEntity> entity, VcDbObjectId blockId = {})
    {
        Writing<VcDbBlockTableRecord> block(blockId.isNull() ? modelId() : blockId);
        EXPECT_EQ(block.status, Vcad::eOk);
        if (!block)
            return {};
        VcDbObjectId id;
        VcDbEntity* added = entity.release();
        EXPECT_EQ(block->appendVcDbEntity(id, added), Vcad::eOk);
        added->close();
        return id;
    }

    template <class Table, class Record>
    VcDbObjectId addRecord(const wchar_t* name)
    {
        Table* table = nullptr;
        EXPECT_EQ(database.getSymbolTable(table, VcDb::kForWrite), Vcad::eOk);
        auto* record = new Record;
        record->setName(name);
        VcDbObjectId id;
        EXPECT_EQ(table->add(id, record), Vcad::eOk);
        record->close();
        table->close();
        return id;
    }
    VcDbObjectId layer(const wchar_t* name) { return addRecord<VcDbLayerTable, VcDbLayerTableRecord>(name); }
    VcDbObjectId style(const wchar_t* name) { return addRecord<VcDbTextStyleTable, VcDbTextStyleTableRecord>(name); }
    VcDbObjectId dimStyle(const wchar_t* name) { return addRecord<VcDbDimStyleTable, VcDbDimStyleTableRecord>(name); }
    VcDbObjectId block(const wchar_t* name) { return addRecord<VcDbBlockTable, VcDbBlockTableRecord>(name); }
    VcDbObjectId application(const wchar_t* name) { return addRecord<VcDbRegAppTable, VcDbRegAppTableRecord>(name); }

    VcDbObjectId line(const VcGePoint3d& from = {1, 2, 3}, const VcGePoint3d& to = {4, 6, 3})
    {
        return add(std::make_unique<VcDbLine>(from, to));
    }

    // What the object says in a file of the newest release, with its common properties.
    std::string saidBy(VcDbObjectId id, DxfVersion version = DxfVersion::Newest)
    {
        return dumpOf(*core().object(id), core(), version);
    }

    // The change is taken back and made again; each time the object must say what it said then.
    void undoAndRedo(VcDbObjectId id, const std::function<void()>& change)
    {
        const std::string before = saidBy(id);
        const std::size_t mark = core().undo().mark();
        change();
        const std::string after = saidBy(id);
        auto span = core().undo().rollbackKeeping(mark);
        EXPECT_EQ(saidBy(id), before) << "taken back";
        core().undo().redo(std::move(span));
        EXPECT_EQ(saidBy(id), after) << "made again";
    }

    VcDbDatabase database;
};
