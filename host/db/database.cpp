#include "host/db/database.h"

#include "host/db/kept_extents.h"
#include "host/db/model_section.h"

#include "host/base/unicode.h"
#include "host/db/record_names.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_tables.h"

#include <utility>

namespace {

// The open databases, few as they are. Serial numbers are never used again, so that ids of a closed one are known to be stale.
std::vector<DatabaseCore*>& openDatabases()
{
    static auto* all = new std::vector<DatabaseCore*>;  // outlives every static that holds a database
    return *all;
}

std::uint32_t nextSerial()
{
    static std::uint32_t last = 0;
    return ++last;
}

}

DatabaseCore::DatabaseCore(VcDbDatabase& face)
    : m_face(face), m_serial(nextSerial()), m_undo(*this), m_header(*this),
      m_referenceMarks(std::make_unique<ReferenceMarks>())
{
    openDatabases().push_back(this);
    m_chunks.push_back(std::make_unique<Place[]>(kChunk));
}

DatabaseCore::~DatabaseCore()
{
    m_undo.clear();
    KeptExtents::forget(m_serial);
    forgetModelSection(m_serial);
    for (std::uint32_t slot = 1; slot < m_slotCount; ++slot)
        delete place(slot).object;
    std::erase(openDatabases(), this);
}

DatabaseCore* DatabaseCore::bySerial(std::uint32_t serial)
{
    for (DatabaseCore* open : openDatabases())
        if (open->m_serial == serial)
            return open;
    return nullptr;
}

std::uint32_t DatabaseCore::newSlot(std::uint64_t handle)
{
    const std::uint32_t slot = m_slotCount++;
    if (slot / kChunk >= m_chunks.size())
        m_chunks.push_back(std::make_unique<Place[]>(kChunk));
    if (handle)
        bindHandle(handle, slot);
    return slot;
}

// The pages may reach to a small multiple of what the drawing holds; a handle far beyond goes to the hash.
void DatabaseCore::bindHandle(std::uint64_t handle, std::uint32_t slot)
{
    place(slot).handle = handle;
    const std::uint64_t page = handle / kHandlePage;
    const std::uint64_t bound = std::max<std::uint64_t>(65536, std::uint64_t(m_slotCount) * 4);
    if (handle < bound && page >= m_handlePages.size())
        m_handlePages.resize(page + 1);
    if (page < m_handlePages.size()) {
        if (!m_handlePages[page])
            m_handlePages[page] = std::make_unique<std::uint32_t[]>(kHandlePage);
        m_handlePages[page][handle % kHandlePage] = slot;
    } else {
        m_sparseHandles[handle] = slot;
    }
    raiseHandleSeed(handle + 1);
}

void DatabaseCore::raiseHandleSeed(std::uint64_t seed) { m_handleSeed = std::max(m_handleSeed, seed); }

VcDbObjectId DatabaseCore::findHandle(std::uint64_t handle) const
{
    if (handle / kHandlePage < m_handlePages.size()) {
        const auto& page = m_handlePages[handle / kHandlePage];
        if (const std::uint32_t slot = page ? page[handle % kHandlePage] : 0)
            return idAt(slot);
    }
    if (m_sparseHandles.empty())
        return {};
    const auto found = m_sparseHandles.find(handle);
    return found == m_sparseHandles.end() ? VcDbObjectId() : idAt(found->second);
}

VcDbObjectId DatabaseCore::reserveHandle(std::uint64_t handle)
{
    if (handle == 0)
        return {};
    const VcDbObjectId known = findHandle(handle);
    return known.isNull() ? idAt(newSlot(handle)) : known;
}

std::uint64_t DatabaseCore::nextHandle()
{
    if (const auto prepare = std::exchange(beforeFirstHandle, nullptr))
        prepare();
    while (!findHandle(m_handleSeed).isNull())
        ++m_handleSeed;
    return m_handleSeed;
}

std::uint64_t DatabaseCore::handleOf(VcDbObjectId id) const
{
    return id.databaseSerial() == m_serial && id.slot() < m_slotCount ? place(id.slot()).handle : 0;
}

VcDbObjectId DatabaseCore::add(std::unique_ptr<VcDbObject> object, VcDbObjectId owner, std::uint64_t handle)
{
    return fill(idAt(newSlot(handle ? handle : nextHandle())), std::move(object), owner);
}

VcDbObjectId DatabaseCore::addWithoutHandle(std::unique_ptr<VcDbObject> object, VcDbObjectId owner)
{
    return fill(idAt(newSlot(0)), std::move(object), owner);
}

void DatabaseCore::giveHandle(VcDbObjectId id) { bindHandle(nextHandle(), id.slot()); }

VcDbObjectId DatabaseCore::fill(VcDbObjectId reserved, std::unique_ptr<VcDbObject> object, VcDbObjectId owner)
{
    VcDbObject& added = *object;
    added.m_id = reserved;
    added.m_owner = owner.slot();
    place(reserved.slot()).object = object.release();
    if (VcDbEntity* entity = VcDbEntity::cast(&added); entity && entity->m_ownProps) {
        added.m_props = m_props.intern(*entity->m_ownProps);
        entity->m_ownProps.reset();
    }
    m_undo.recordCreated(added);
    return reserved;
}

// The log is cut to its later half when it is full. Nobody asks for each of the changes that a file brings.
void DatabaseCore::noteChange(std::uint32_t slot)
{
    constexpr std::size_t kLongest = 1 << 17;
    if (KeptExtents* kept = KeptExtents::existing(m_serial))
        kept->changing(*this, slot);
    if (loading) {
        m_logStart = changeCount() + 1;
        m_changeLog.clear();
        return;
    }
    if (m_changeLog.size() == kLongest) {
        m_changeLog.erase(m_changeLog.begin(), m_changeLog.begin() + kLongest / 2);
        m_logStart += kLongest / 2;
    }
    m_changeLog.push_back(slot);
}

std::optional<std::span<const std::uint32_t>> DatabaseCore::changedSince(std::uint64_t count) const
{
    if (count < m_logStart || count > changeCount())
        return std::nullopt;
    return std::span(m_changeLog).subspan(std::size_t(count - m_logStart));
}

VcDbSymbolTable& DatabaseCore::table(NameTable table) const { return *objectAs<VcDbSymbolTable>(tableId(table)); }

VcDbObjectId DatabaseCore::findRecord(NameTable which, std::string_view name) const
{
    const VcDbSymbolTable* t = objectAs<VcDbSymbolTable>(tableId(which));
    return t ? t->find(name) : VcDbObjectId();
}

VcDbObjectId DatabaseCore::recordFor(NameTable which, std::string_view name)
{
    VcDbSymbolTable& t = table(which);
    if (const VcDbObjectId known = t.find(name); !known.isNull())
        return known;
    std::unique_ptr<VcDbSymbolTableRecord> record(t.newRecord());
    record->setNameUtf8(std::string(name));
    record->m_implicit = true;
    completeRecord(*record, *this);
    VcDbSymbolTableRecord& added = *record;
    const VcDbObjectId id = add(std::move(record), t.objectId());
    t.recordAdded(added);
    return id;
}

void DatabaseCore::setSpaces(VcDbObjectId model, VcDbObjectId paper)
{
    m_modelSpace = model;
    m_paperSpace = paper;
}

VcDbObjectId DatabaseCore::currentSpace() const
{
    return m_header.integer("$TILEMODE", 1) == 1 || m_paperSpace.isNull() || inModelViewport ? m_modelSpace
                                                                                             : m_paperSpace;
}
