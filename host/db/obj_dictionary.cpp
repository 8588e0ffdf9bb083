#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

#include <unordered_set>

VCDB_DEFINE(VcDbDictionary, VcDbObject, "DICTIONARY")
VCDB_DEFINE(VcDbDictionaryWithDefault, VcDbDictionary, "ACDBDICTIONARYWDFLT")

// An entry that has been taken out stays as a tombstone, so that undo finds its place again.
struct VcDbDictionary::Entry {
    std::string name;
    VcDbObjectId id;
    std::int16_t code = 350;  // of the reference in a file: 350 soft, 360 hard
    bool live = true;
};

struct VcDbDictionary::Entries {
    static constexpr std::size_t kIndexed = 24;  // a short list is searched faster than a hash

    std::vector<Entry> list;
    std::unordered_map<std::string, std::uint32_t, NoCaseHash, NoCaseEqual> byName;  // live ones, once the list is long
    std::unordered_multimap<VcDbObjectId, std::uint32_t> byId;

    void index(std::size_t position)
    {
        const Entry& entry = list[position];
        if (!entry.live)
            return;
        byName.insert_or_assign(entry.name, std::uint32_t(position));
        byId.emplace(entry.id, std::uint32_t(position));
    }
    void unindex(std::size_t position)
    {
        const Entry& entry = list[position];
        if (const auto at = byName.find(entry.name); at != byName.end() && at->second == position)
            byName.erase(at);
        const auto [first, last] = byId.equal_range(entry.id);
        for (auto at = first; at != last; ++at)
            if (at->second == position) {
                byId.erase(at);
                return;
            }
    }
    bool isIndexed() const { return list.size() > kIndexed; }
    void grown()
    {
        if (list.size() == kIndexed + 1)
            for (std::size_t i = 0; i < list.size(); ++i)
                index(i);
        else if (isIndexed())
            index(list.size() - 1);
    }
};

// What the entry at a position was, or will be again.
class VcDbDictionary::EntryChange : public UndoAction {
public:
    EntryChange(VcDbObjectId dictionary, std::size_t position, Entry other)
        : m_dictionary(dictionary), m_position(position), m_other(std::move(other))
    {
    }
    void swap(DatabaseCore& db) override
    {
        if (auto* dictionary = db.objectAs<VcDbDictionary>(m_dictionary))
            dictionary->exchange(m_position, m_other);
    }

private:
    VcDbObjectId m_dictionary;
    std::size_t m_position;
    Entry m_other;
};

namespace {
constexpr std::size_t kNowhere = std::size_t(-1);
}

VcDbDictionary::VcDbDictionary() : m_entries(std::make_unique<Entries>()) {}
VcDbDictionary::~VcDbDictionary() = default;

// Entries belong to the dictionary's place in the drawing and not to its state: a copy begins empty.
VcDbDictionary::VcDbDictionary(const VcDbDictionary& o)
    : VcDbObject(o), m_entries(std::make_unique<Entries>()), m_mergeStyle(o.m_mergeStyle), m_hard(o.m_hard)
{
}

VcDbDictionary& VcDbDictionary::operator=(const VcDbDictionary& o)
{
    VcDbObject::operator=(o);
    m_mergeStyle = o.m_mergeStyle;
    m_hard = o.m_hard;
    return *this;
}

// Entries

bool VcDbDictionary::isErasedEntry(const Entry& entry) const
{
    const DatabaseCore* db = DatabaseCore::of(entry.id);
    const VcDbObject* object = db ? db->object(entry.id) : nullptr;
    return object && object->isErased();
}

bool VcDbDictionary::isThere(const Entry& entry) const { return entry.live && !entry.id.isErased(); }

std::size_t VcDbDictionary::positionOf(std::string_view name) const
{
    if (m_entries->isIndexed()) {
        const auto found = m_entries->byName.find(name);
        return found == m_entries->byName.end() ? kNowhere : found->second;
    }
    for (std::size_t i = 0; i < m_entries->list.size(); ++i)
        if (m_entries->list[i].live && equalNoCase(m_entries->list[i].name, name))
            return i;
    return kNowhere;
}

std::size_t VcDbDictionary::positionOf(VcDbObjectId id) const
{
    if (m_entries->isIndexed()) {
        const auto found = m_entries->byId.find(id);
        return found == m_entries->byId.end() ? kNowhere : found->second;
    }
    for (std::size_t i = 0; i < m_entries->list.size(); ++i)
        if (m_entries->list[i].live && m_entries->list[i].id == id)
            return i;
    return kNowhere;
}

void VcDbDictionary::exchange(std::size_t position, Entry& other)
{
    if (m_entries->isIndexed())
        m_entries->unindex(position);
    std::swap(m_entries->list[position], other);
    if (m_entries->isIndexed())
        m_entries->index(position);
}

void VcDbDictionary::change(std::size_t position, Entry entry)
{
    assertWriteEnabled();
    exchange(position, entry);
    if (DatabaseCore* db = DatabaseCore::of(m_id))
        db->undo().record(std::make_unique<EntryChange>(m_id, position, std::move(entry)));
}

void VcDbDictionary::append(Entry entry)
{
    assertWriteEnabled();
    m_entries->list.push_back(std::move(entry));
    m_entries->grown();
    Entry before;
    before.live = false;
    if (DatabaseCore* db = DatabaseCore::of(m_id))
        db->undo().record(std::make_unique<EntryChange>(m_id, m_entries->list.size() - 1, std::move(before)));
}

// Looking up

VcDbObjectId VcDbDictionary::find(std::string_view name) const
{
    const std::size_t at = positionOf(name);
    return at != kNowhere && isThere(m_entries->list[at]) ? m_entries->list[at].id : VcDbObjectId();
}

std::string VcDbDictionary::nameOf(VcDbObjectId id) const
{
    const std::size_t at = positionOf(id);
    return at == kNowhere ? std::string() : m_entries->list[at].name;
}

Vcad::ErrorStatus VcDbDictionary::getAt(const wchar_t* name, VcDbObjectId& id) const
{
    if (!name)
        return Vcad::eInvalidInput;
    const VcDbObjectId found = find(wideToUtf8(name));
    if (found.isNull())
        return Vcad::eKeyNotFound;
    id = found;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbDictionary::getAt(const wchar_t* name, VcDbObject*& object, VcDb::OpenMode mode) const
{
    object = nullptr;
    VcDbObjectId id;
    const Vcad::ErrorStatus status = getAt(name, id);
    return status ? status : vcdbOpenVcDbObject(object, id, mode);
}

bool VcDbDictionary::has(const wchar_t* name) const { return name && !find(wideToUtf8(name)).isNull(); }

bool VcDbDictionary::has(VcDbObjectId id) const
{
    const std::size_t at = positionOf(id);
    return at != kNowhere && isThere(m_entries->list[at]);
}

Vcad::ErrorStatus VcDbDictionary::nameAt(VcDbObjectId id, wchar_t*& name) const
{
    if (!has(id))
        return Vcad::eKeyNotFound;
    name = heapStringFromUtf8(nameOf(id));
    return Vcad::eOk;
}

std::uint32_t VcDbDictionary::numEntries() const
{
    const auto& list = m_entries->list;
    return std::uint32_t(
        std::count_if(list.begin(), list.end(), [this](const Entry& entry) { return isThere(entry); }));
}

std::vector<std::pair<std::string, VcDbObjectId>> VcDbDictionary::liveEntries() const
{
    std::vector<std::pair<std::string, VcDbObjectId>> live;
    for (const Entry& entry : m_entries->list)
        if (entry.live && !isErasedEntry(entry))
            live.emplace_back(entry.name, entry.id);
    return live;
}

// Changing

// An entry whose object is gone gives its name up; it stays as a tombstone, for undo may bring the object back.
void VcDbDictionary::put(Entry entry)
{
    const std::size_t at = positionOf(entry.name);
    if (at != kNowhere && !isErasedEntry(m_entries->list[at])) {
        if (m_entries->list[at].id != entry.id)
            change(at, std::move(entry));
        return;
    }
    if (at != kNowhere) {
        Entry gone = m_entries->list[at];
        gone.live = false;
        change(at, std::move(gone));
    }
    append(std::move(entry));
}

void VcDbDictionary::setAtUtf8(std::string_view name, VcDbObjectId id)
{
    put({std::string(name), id, std::int16_t(m_hard ? 360 : 350)});
}

bool VcDbDictionary::removeUtf8(std::string_view name)
{
    const std::size_t at = positionOf(name);
    if (at == kNowhere || !isThere(m_entries->list[at]))
        return false;
    Entry gone = m_entries->list[at];
    gone.live = false;
    change(at, std::move(gone));
    return true;
}

Vcad::ErrorStatus VcDbDictionary::setAt(const wchar_t* name, VcDbObject* object, VcDbObjectId& id)
{
    DatabaseCore* db = DatabaseCore::of(m_id);
    if (!db)
        return Vcad::eNoDatabase;
    if (!name || !*name)
        return Vcad::eInvalidKey;
    if (!object || object->isKindOf(VcDbEntity::desc()) || object->isKindOf(VcDbSymbolTableRecord::desc()))
        return Vcad::eInvalidInput;
    const bool isNew = object->objectId().isNull();
    if (!isNew && (object->database() != database() || !object->ownerId().isNull()))
        return Vcad::eInvalidInput;
    const std::string key = wideToUtf8(name);
    const VcDbObjectId before = find(key);
    id = isNew ? db->add(std::unique_ptr<VcDbObject>(object), m_id) : object->objectId();
    if (isNew)
        object->openNew();
    else
        object->setOwnerId(m_id);
    object->addPersistentReactor(m_id);
    setAtUtf8(key, id);
    if (VcDbObject* replaced = db->object(before))
        replaced->erase();
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbDictionary::remove(const wchar_t* name)
{
    VcDbObjectId id;
    return remove(name, id);
}

Vcad::ErrorStatus VcDbDictionary::remove(const wchar_t* name, VcDbObjectId& id)
{
    const Vcad::ErrorStatus status = getAt(name, id);
    return status ? status : remove(id);
}

Vcad::ErrorStatus VcDbDictionary::remove(VcDbObjectId id)
{
    if (!has(id))
        return Vcad::eKeyNotFound;
    removeUtf8(nameOf(id));
    VcDbObject* object = DatabaseCore::of(id)->object(id);
    object->removePersistentReactor(m_id);
    if (object->ownerId() == m_id)
        object->setOwnerId({});
    return Vcad::eOk;
}

bool VcDbDictionary::setName(const wchar_t* oldName, const wchar_t* newName)
{
    if (!oldName || !newName || !*newName)
        return false;
    const std::string from = wideToUtf8(oldName), to = wideToUtf8(newName);
    const std::size_t at = positionOf(from);
    if (at == kNowhere || !isThere(m_entries->list[at]) || (!equalNoCase(from, to) && !find(to).isNull()))
        return false;
    if (const std::size_t taken = positionOf(to); taken != kNowhere && taken != at) {
        Entry gone = m_entries->list[taken];
        gone.live = false;
        change(taken, std::move(gone));
    }
    Entry renamed = m_entries->list[at];
    renamed.name = to;
    change(at, std::move(renamed));
    return true;
}

void VcDbDictionary::setTreatElementsAsHard(bool hard)
{
    assertWriteEnabled();
    m_hard = hard;
}

Vcad::ErrorStatus VcDbDictionary::setMergeStyle(std::int16_t style)
{
    if (style < 0 || style > 5)
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_mergeStyle = style;
    return Vcad::eOk;
}

// Erasing a dictionary takes along what it owns.
void VcDbDictionary::eraseOwned(bool erasing)
{
    const DatabaseCore* db = DatabaseCore::of(m_id);
    for (const Entry& entry : m_entries->list) {
        VcDbObject* object = db && entry.live ? db->object(entry.id) : nullptr;
        if (object && object->ownerId() == m_id)
            object->eraseWithOwner(erasing);
    }
}

// Files and chains

void VcDbDictionary::fields(FieldVisitor& v)
{
    VcDbObject::fields(v);
    v.subclass("AcDbDictionary");
    v.optionalNumber(280, m_hard, false);
    if (v.isReading() || v.atLeast(DxfVersion::R2000))
        v.number(281, m_mergeStyle);
    entryFields(v);
}

void VcDbDictionary::entryFields(FieldVisitor& v)
{
    if (v.isReading()) {
        std::vector<Entry> read;
        while (v.beginItem(3)) {
            Entry& entry = read.emplace_back();
            v.text(3, entry.name);
            entry.code = std::int16_t(v.peek() == 360 ? 360 : 350);
            v.ref(entry.code, entry.code == 360 ? RefKind::HardOwner : RefKind::SoftOwner, entry.id);
            v.endItem();
        }
        takeOver(std::move(read));
        return;
    }
    for (Entry& entry : m_entries->list) {
        if (!entry.live || isErasedEntry(entry))
            continue;
        v.beginItem(3);
        v.text(3, entry.name);
        const VcDbObjectId before = entry.id;
        VcDbObjectId id = before;
        v.ref(entry.code, entry.code == 360 ? RefKind::HardOwner : RefKind::SoftOwner, id);
        if (id != before) {
            Entry other = entry;
            other.id = id;
            exchange(std::size_t(&entry - m_entries->list.data()), other);
        }
        v.endItem();
    }
}

// A list as it came: what it leaves out is taken out, the rest is set. Names that stand twice in a file keep both places.
void VcDbDictionary::takeOver(std::vector<Entry> read)
{
    if (m_entries->list.empty()) {
        for (Entry& entry : read)
            append(std::move(entry));
        return;
    }
    std::unordered_set<std::string, NoCaseHash, NoCaseEqual> names;
    for (const Entry& entry : read)
        names.insert(entry.name);
    for (const auto& [name, id] : liveEntries())
        if (!names.contains(name))
            removeUtf8(name);
    for (Entry& entry : read)
        put(std::move(entry));
}

Vcad::ErrorStatus VcDbDictionaryWithDefault::setDefaultId(VcDbObjectId id)
{
    if (!id.isValid())
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_default = id;
    return Vcad::eOk;
}

void VcDbDictionaryWithDefault::fields(FieldVisitor& v)
{
    VcDbDictionary::fields(v);
    v.subclass("AcDbDictionaryWithDefault");
    v.ref(340, RefKind::HardPointer, m_default);
}

// Walking

VcDbDictionaryIterator* VcDbDictionary::newIterator() const { return new VcDbDictionaryIterator(*this); }

VcDbDictionaryIterator::VcDbDictionaryIterator(const VcDbDictionary& dictionary) : m_dictionary(dictionary.objectId())
{
    skip();
}

const VcDbDictionary* VcDbDictionaryIterator::dictionary() const
{
    const DatabaseCore* db = DatabaseCore::of(m_dictionary);
    return db ? db->objectAs<VcDbDictionary>(m_dictionary) : nullptr;
}

void VcDbDictionaryIterator::skip()
{
    while (const VcDbDictionary* d = dictionary()) {
        if (m_at >= d->m_entries->list.size() || d->isThere(d->m_entries->list[m_at]))
            return;
        ++m_at;
    }
}

bool VcDbDictionaryIterator::done() const
{
    const VcDbDictionary* d = dictionary();
    return !d || m_at >= d->m_entries->list.size();
}

bool VcDbDictionaryIterator::next()
{
    if (done())
        return false;
    ++m_at;
    skip();
    return !done();
}

bool VcDbDictionaryIterator::setPosition(VcDbObjectId id)
{
    const VcDbDictionary* d = dictionary();
    if (!d || !d->has(id))
        return false;
    m_at = d->positionOf(id);
    return true;
}

const wchar_t* VcDbDictionaryIterator::name() const
{
    m_name.drop();
    return done() ? L"" : m_name.of(dictionary()->m_entries->list[m_at].name);
}

VcDbObjectId VcDbDictionaryIterator::objectId() const
{
    return done() ? VcDbObjectId() : dictionary()->m_entries->list[m_at].id;
}

Vcad::ErrorStatus VcDbDictionaryIterator::getObject(VcDbObject*& object, VcDb::OpenMode mode) const
{
    object = nullptr;
    return done() ? Vcad::eInvalidIndex : vcdbOpenVcDbObject(object, objectId(), mode);
}
