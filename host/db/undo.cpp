#include "host/db/undo.h"

#include "host/db/database.h"

UndoAction::~UndoAction() = default;

struct UndoJournal::Span {
    std::vector<Change> changes;
};

UndoJournal::UndoJournal(DatabaseCore& db) : m_db(db) {}
UndoJournal::~UndoJournal() = default;

void UndoJournal::SpanDeleter::operator()(Span* span) const { delete span; }

void UndoJournal::setRecording(bool on) { m_recording = on; }

void UndoJournal::recordState(VcDbObject& object)
{
    m_db.noteChange(object.objectId().slot());
    if (!isRecording() || object.m_recorded)
        return;
    object.m_recorded = true;
    m_changes.push_back({Change::Kind::State, object.objectId(), object.copyOf(), nullptr});
}

void UndoJournal::recordCreated(VcDbObject& object)
{
    m_db.noteChange(object.objectId().slot());
    if (!isRecording())
        return;
    object.m_recorded = true;  // undo erases it, so its states in between are of no use
    m_changes.push_back({Change::Kind::Created, object.objectId(), nullptr, nullptr});
}

void UndoJournal::recordErase(VcDbObject& object)
{
    m_db.noteChange(object.objectId().slot());
    if (isRecording())
        m_changes.push_back({Change::Kind::Erased, object.objectId(), nullptr, nullptr});
}

void UndoJournal::record(std::unique_ptr<UndoAction> action)
{
    m_db.noteChange(0);
    if (isRecording())
        m_changes.push_back({Change::Kind::Action, {}, nullptr, std::move(action)});
}

std::size_t UndoJournal::mark()
{
    forgetRecorded(m_changes.size());
    m_lastMark = m_changes.size();
    return m_lastMark;
}

void UndoJournal::forgetRecorded(std::size_t end)
{
    for (std::size_t i = m_lastMark; i < end; ++i)
        if (VcDbObject* object = m_db.object(m_changes[i].id))
            object->m_recorded = false;
}

// Puts the other state in place and keeps the present one, which is built in the spare where that is of the same class.
void UndoJournal::swapState(VcDbObject& object, std::unique_ptr<VcDbObject>& state, std::unique_ptr<VcDbObject>& spare)
{
    if (spare && spare->isA() == object.isA())
        spare->assignFrom(object);
    else
        spare = object.copyOf();
    const auto readers = object.m_readers;
    const bool writing = object.m_writing, erased = object.m_erased;
    object.assignFrom(*state);
    object.m_readers = readers;
    object.m_writing = writing;
    object.m_erased = erased;  // erasing is journalled for itself
    object.m_recorded = false;
    object.stateRestored(*spare);
    state.swap(spare);
}

void UndoJournal::swapBack(Change& change, std::unique_ptr<VcDbObject>& spare)
{
    if (change.kind == Change::Kind::Action) {
        change.action->swap(m_db);
        return;
    }
    VcDbObject* object = m_db.object(change.id);
    if (!object)
        return;
    m_db.noteChange(change.id.slot());
    if (change.kind == Change::Kind::State)
        return swapState(*object, change.state, spare);
    object->m_erased = !object->m_erased;
    object->m_recorded = false;
    object->erasedChanged();
}

void UndoJournal::rollback(std::size_t position) { rollbackKeeping(position); }

UndoJournal::SpanPtr UndoJournal::rollbackKeeping(std::size_t position)
{
    SpanPtr span(new Span);
    forgetRecorded(std::min(position, m_changes.size()));  // the others forget it as they are swapped
    if (position >= m_changes.size())
        return span;
    m_swapping = true;
    std::unique_ptr<VcDbObject> spare;
    for (std::size_t i = m_changes.size(); i-- > position;)
        swapBack(m_changes[i], spare);
    m_swapping = false;
    span->changes.assign(std::make_move_iterator(m_changes.begin() + position),
                         std::make_move_iterator(m_changes.end()));
    m_changes.erase(m_changes.begin() + position, m_changes.end());
    m_lastMark = m_changes.size();
    m_db.noteChange(0);
    return span;
}

void UndoJournal::redo(SpanPtr span)
{
    mark();
    m_swapping = true;
    std::unique_ptr<VcDbObject> spare;
    for (Change& change : span->changes) {
        swapBack(change, spare);
        m_changes.push_back(std::move(change));
    }
    m_swapping = false;
    m_lastMark = m_changes.size();
    m_db.noteChange(0);
}

void UndoJournal::clear()
{
    forgetRecorded(m_changes.size());
    m_changes.clear();
    m_lastMark = 0;
}

std::vector<UndoJournal::Touched> UndoJournal::touchedSince(std::size_t position) const
{
    std::vector<Touched> touched;
    std::unordered_map<VcDbObjectId, std::size_t> seen;
    for (std::size_t i = position; i < m_changes.size(); ++i) {
        const Change& change = m_changes[i];
        if (change.kind == Change::Kind::Action)
            continue;
        const auto [at, isNew] = seen.emplace(change.id, touched.size());
        if (isNew)
            touched.push_back({change.id, false, false, false});
        Touched& t = touched[at->second];
        t.created |= change.kind == Change::Kind::Created;
        t.erased |= change.kind == Change::Kind::Erased;
        t.modified |= change.kind == Change::Kind::State;
        if (!t.before && change.kind == Change::Kind::State)
            t.before = change.state.get();
    }
    return touched;
}

const VcDbObject* UndoJournal::stateAt(std::size_t position, VcDbObjectId id) const
{
    for (std::size_t i = position; i < m_changes.size(); ++i)
        if (m_changes[i].id == id && m_changes[i].kind == Change::Kind::State)
            return m_changes[i].state.get();
    return nullptr;
}
