#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_objects.h"

#include <unordered_set>

VCDB_DEFINE(VcDbGroup, VcDbObject, "GROUP")

namespace {

VcDbDictionary* dictionaryOf(const VcDbObject& object)
{
    const DatabaseCore* db = DatabaseCore::of(object.objectId());
    return db ? db->liveAs<VcDbDictionary>(object.ownerId()) : nullptr;
}

std::wstring freeAnonymousKey(const VcDbDictionary& dictionary)
{
    for (std::uint32_t number = std::max(1u, dictionary.numEntries());; ++number) {
        const std::string key = "*A" + std::to_string(number);
        if (dictionary.find(key).isNull())
            return utf8ToWide(key);
    }
}

}

Vcad::ErrorStatus VcDbGroup::append(VcDbObjectId id) { return append(VcDbObjectIdArray{id}); }

// All that can be appended are, and the first refusal is told.
Vcad::ErrorStatus VcDbGroup::append(const VcDbObjectIdArray& ids)
{
    std::unordered_set<VcDbObjectId> members(m_members.begin(), m_members.end());
    Vcad::ErrorStatus first = Vcad::eOk;
    assertWriteEnabled();
    for (const VcDbObjectId id : ids) {
        const Vcad::ErrorStatus status = members.insert(id).second ? appendNew(id) : Vcad::eDuplicateKey;
        first = first ? first : status;
    }
    return first;
}

Vcad::ErrorStatus VcDbGroup::appendNew(VcDbObjectId id)
{
    const DatabaseCore* db = DatabaseCore::of(id);
    VcDbEntity* entity = db ? db->liveAs<VcDbEntity>(id) : nullptr;
    if (!entity)
        return Vcad::eInvalidInput;
    if (!m_id.isNull() && id.databaseSerial() != m_id.databaseSerial())
        return Vcad::eWrongDatabase;
    m_members.push_back(id);
    if (!m_id.isNull())
        entity->addPersistentReactor(m_id);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbGroup::remove(VcDbObjectId id)
{
    const auto at = std::find(m_members.begin(), m_members.end(), id);
    if (at == m_members.end())
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_members.erase(at);
    if (VcDbObject* entity = DatabaseCore::of(id) ? DatabaseCore::of(id)->object(id) : nullptr)
        entity->removePersistentReactor(m_id);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbGroup::clear()
{
    const std::vector<VcDbObjectId> members = m_members;
    for (const VcDbObjectId id : members)
        remove(id);
    return Vcad::eOk;
}

bool VcDbGroup::has(VcDbObjectId id) const
{
    return !id.isErased() && std::find(m_members.begin(), m_members.end(), id) != m_members.end();
}
bool VcDbGroup::has(const VcDbEntity* entity) const { return entity && has(entity->objectId()); }

std::uint32_t VcDbGroup::allEntityIds(VcDbObjectIdArray& ids) const
{
    ids.clear();
    std::copy_if(m_members.begin(), m_members.end(), std::back_inserter(ids),
                 [](VcDbObjectId id) { return !id.isErased(); });
    return std::uint32_t(ids.size());
}

std::uint32_t VcDbGroup::numEntities() const
{
    VcDbObjectIdArray ids;
    return allEntityIds(ids);
}

VcDbGroupIterator* VcDbGroup::newIterator() const { return new VcDbGroupIterator(m_members); }

Vcad::ErrorStatus VcDbGroupIterator::getObject(VcDbObject*& object, VcDb::OpenMode mode) const
{
    return vcdbOpenVcDbObject(object, objectId(), mode);
}

Vcad::ErrorStatus VcDbGroup::setAnonymous()
{
    assertWriteEnabled();
    m_anonymous = true;
    VcDbDictionary* dictionary = dictionaryOf(*this);
    if (!dictionary || nameUtf8().starts_with("*A"))
        return Vcad::eOk;
    const std::wstring now = utf8ToWide(nameUtf8());
    return dictionary->setName(now.c_str(), freeAnonymousKey(*dictionary).c_str()) ? Vcad::eOk : Vcad::eKeyNotFound;
}

Vcad::ErrorStatus VcDbGroup::setSelectable(bool selectable)
{
    assertWriteEnabled();
    m_selectable = selectable;
    return Vcad::eOk;
}

wchar_t* VcDbGroup::description() const { return heapStringFromUtf8(m_description); }

Vcad::ErrorStatus VcDbGroup::setDescription(const wchar_t* text)
{
    if (!text)
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_description = wideToUtf8(text);
    return Vcad::eOk;
}

std::string VcDbGroup::nameUtf8() const
{
    const VcDbDictionary* dictionary = dictionaryOf(*this);
    return dictionary ? dictionary->nameOf(m_id) : std::string();
}

wchar_t* VcDbGroup::getName() const { return heapStringFromUtf8(nameUtf8()); }

Vcad::ErrorStatus VcDbGroup::setName(const wchar_t* name)
{
    VcDbDictionary* dictionary = dictionaryOf(*this);
    if (!dictionary)
        return Vcad::eNoDatabase;
    if (!name || !dictionary->setName(utf8ToWide(nameUtf8()).c_str(), name))
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_anonymous = *name == L'*';
    return Vcad::eOk;
}

// Erased members are left out, but not forgotten.
void VcDbGroup::fields(FieldVisitor& v)
{
    VcDbObject::fields(v);
    v.subclass("AcDbGroup");
    v.text(300, m_description);
    v.number(70, m_anonymous);
    v.number(71, m_selectable);
    if (!v.isWriting()) {
        v.refs(340, RefKind::HardPointer, m_members);
        return;
    }
    for (VcDbObjectId id : m_members) {
        const DatabaseCore* db = DatabaseCore::of(id);
        const VcDbObject* member = db ? db->object(id) : nullptr;
        if (!member || !member->isErased())
            v.ref(340, RefKind::HardPointer, id);
    }
}
