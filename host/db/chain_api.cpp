#include "sdk/vcdb_chains.h"

#include "host/base/unicode.h"
#include "host/db/chain.h"
#include "host/db/coordinate_system.h"
#include "host/db/database.h"
#include "host/db/host_services.h"
#include "host/db/extras.h"
#include "host/db/kept_object.h"
#include "host/db/record_names.h"
#include "host/db/xdata.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

#include <cstring>
#include <cwctype>

namespace {

VcDbObject* liveObject(const vds_name name)
{
    VcDbObjectId id;
    if (!nameToId(name, id))
        return nullptr;
    VcDbObject* object = DatabaseCore::of(id)->object(id);
    return object->isErased() ? nullptr : object;
}

// An object open for write for the life of the guard.
class OpenForWrite {
public:
    explicit OpenForWrite(VcDbObjectId id, bool openErased = false)
    {
        DatabaseCore::openObject(m_object, id, VcDb::kForWrite, openErased);
    }
    ~OpenForWrite()
    {
        if (m_object)
            m_object->close();
    }
    OpenForWrite(const OpenForWrite&) = delete;
    OpenForWrite& operator=(const OpenForWrite&) = delete;
    explicit operator bool() const { return m_object != nullptr; }
    VcDbObject& operator*() const { return *m_object; }

private:
    VcDbObject* m_object = nullptr;
};

bool keepsCurrentLayer(const VcDbSymbolTableRecord& before, const VcDbSymbolTableRecord& after)
{
    const auto* layer = VcDbLayerTableRecord::cast(&after);
    return !layer || !layer->isFrozen() || DatabaseCore::of(before.objectId())->face().clayer() != before.objectId();
}

// A record's groups become what the chain says; its identity, extras and, of a block, its content stay.
Vcad::ErrorStatus replaceRecord(VcDbSymbolTableRecord& record, ChainGroups& groups)
{
    if (record.isKindOf(VcDbBlockTableRecord::desc()))
        return applyChain(record, groups);
    DatabaseCore* db = DatabaseCore::of(record.objectId());
    std::unique_ptr<VcDbObject> fresh(db->objectAs<VcDbSymbolTable>(record.ownerId())->newRecord());
    fresh->VcDbObject::operator=(record);
    if (const Vcad::ErrorStatus status = readChainInto(*fresh, groups))
        return status;
    auto& wanted = static_cast<VcDbSymbolTableRecord&>(*fresh);
    completeRecord(wanted, *db);
    const VcDbObjectId namesake = db->objectAs<VcDbSymbolTable>(record.ownerId())->find(wanted.nameUtf8());
    if (!namesake.isNull() && namesake != record.objectId())
        return Vcad::eDuplicateKey;
    const bool isRenamed = wanted.nameUtf8() != record.nameUtf8();
    if ((isRenamed && (!isLegalRecordName(wanted.nameUtf8()) || hasFixedName(*db, record))) ||
        !keepsCurrentLayer(record, wanted))
        return Vcad::eInvalidInput;
    const RbPtr xdata = groups.takeXData();
    record.assertWriteEnabled();
    renameInHeader(*db, record, record.nameUtf8(), wanted.nameUtf8());
    const std::unique_ptr<VcDbObject> before = record.copyOf();
    record.assignFrom(wanted);
    record.stateRestored(*before);
    record.fieldsChanged();
    return xdata ? record.setXData(xdata.get()) : Vcad::eOk;
}

bool chainFitsObject(const ChainGroups& groups, const VcDbObject& object)
{
    return groups.type().empty() || groups.type() == "BLOCK" || equalNoCase(groups.type(), dxfNameOf(object));
}

}

resbuf* vcdbEntGet(const vds_name name) { return vcdbEntGetX(name, nullptr); }

resbuf* vcdbEntGetX(const vds_name name, const resbuf* applications)
{
    VcDbObject* object = liveObject(name);
    return object ? chainOf(*object, applications).release() : nullptr;
}

int vcdbEntMod(const resbuf* chain)
{
    ChainGroups groups(chain);
    if (!groups.name() || groups.name()->isNull())
        return RTERROR;
    OpenForWrite object(*groups.name());
    if (!object || !chainFitsObject(groups, *object))
        return RTERROR;
    auto* record = VcDbSymbolTableRecord::cast(&*object);
    const Vcad::ErrorStatus status = record ? replaceRecord(*record, groups) : applyChain(*object, groups);
    return status ? RTERROR : RTNORM;
}

int vcdbEntUpd(const vds_name name)
{
    VcDbObject* object = liveObject(name);
    auto* entity = VcDbEntity::cast(object);
    if (!entity)
        return RTERROR;
    entity->recordGraphicsModified();
    return RTNORM;
}

int vcdbEntDel(const vds_name name)
{
    VcDbObjectId id;
    if (!nameToId(name, id))
        return RTERROR;
    OpenForWrite object(id, true);
    if (!object || VcDbSymbolTable::cast(&*object))
        return RTERROR;
    return (*object).erase(!(*object).isErased()) ? RTERROR : RTNORM;
}

// Digits alone: no sign, no blank, no prefix.
static std::uint64_t handleOfText(const wchar_t* text)
{
    std::uint64_t value = 0;
    const std::wstring_view digits = text ? text : L"";
    if (digits.size() > 16)
        return 0;
    for (const wchar_t digit : digits) {
        if (!std::iswxdigit(wint_t(digit)))
            return 0;
        value = value * 16 + std::uint64_t(digit <= L'9' ? digit - L'0' : (digit | 0x20) - L'a' + 10);
    }
    return value;
}

int vcdbHandEnt(const wchar_t* handle, vds_name nameOut)
{
    const DatabaseCore* db = workingCore();
    const std::uint64_t value = handleOfText(handle);
    if (!db || !nameOut || value == 0)
        return RTERROR;
    const VcDbObjectId id = db->findHandle(value);
    if (!db->object(id))
        return RTERROR;
    idToName(id, nameOut);
    return RTNORM;
}

Vcad::ErrorStatus vcdbGetObjectId(VcDbObjectId& idOut, const vds_name name)
{
    return nameToId(name, idOut) ? Vcad::eOk : Vcad::eInvalidInput;
}

Vcad::ErrorStatus vcdbGetVdsName(vds_name nameOut, VcDbObjectId id)
{
    if (!id.isValid() || !nameOut)
        return Vcad::eInvalidInput;
    idToName(id, nameOut);
    return Vcad::eOk;
}

int vcdbRegApp(const wchar_t* name)
{
    DatabaseCore* db = workingCore();
    if (!db || !name || !*name)
        return RTERROR;
    auto& table = db->table(NameTable::AppId);
    if (table.has(name))
        return RTERROR;
    auto record = std::make_unique<VcDbRegAppTableRecord>();
    VcDbRegAppTableRecord* added = record.get();
    if (record->setName(name) || table.add(record.get()))
        return RTERROR;
    record.release();
    added->close();
    return RTNORM;
}

int vcdbXdRoom(const vds_name name, long* sizeOut)
{
    const VcDbObject* object = liveObject(name);
    if (!object || !sizeOut)
        return RTERROR;
    const ObjectExtras* extras = object->extras();
    *sizeOut = long(kXDataLimit - (extras ? xdataSize(extras->xdata) : 0));
    return RTNORM;
}

int vcdbXdSize(const resbuf* chain, long* sizeOut)
{
    TagList merged;
    if (!sizeOut || mergeXData({}, chain, nullptr, merged) == Vcad::eInvalidInput)
        return RTERROR;
    *sizeOut = long(xdataSize(merged));
    return RTNORM;
}

bool vcdbUcsMatrix(VcGeMatrix3d& matrixOut, VcDbDatabase* database)
{
    const DatabaseCore* db = database ? &database->core() : workingCore();
    matrixOut.setToIdentity();
    if (!db)
        return false;
    matrixOut = currentUcs(*db).toWorld();
    return !matrixOut.isEqualTo(VcGeMatrix3d());
}
