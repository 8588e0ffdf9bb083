// The undo journal of one drawing: what stood before each change, as changes that are their own inverse.
//
// A change holds the other state; applying it swaps. Undo applies a span backwards, redo the same span forwards.
// An object's state is kept once between two marks, however often it changes.
#pragma once

#include "host/base/api.h"
#include "sdk/vcdb_object.h"

#include <memory>
#include <string>
#include <vector>

class DatabaseCore;

// A change of something that is not a single object: a dictionary entry, a header variable.
class UndoAction {
public:
    virtual ~UndoAction();
    virtual void swap(DatabaseCore& db) = 0;
};

class VKHOST_API UndoJournal {
    struct Change {
        enum class Kind : std::uint8_t { State, Created, Erased, Action };
        Kind kind;
        VcDbObjectId id;
        std::unique_ptr<VcDbObject> state;  // of State: how the object was
        std::unique_ptr<UndoAction> action;
    };

public:
    explicit UndoJournal(DatabaseCore& db);
    ~UndoJournal();

    // While a drawing loads, or with UNDO Control None, nothing is kept.
    bool isRecording() const { return m_recording && !m_swapping; }
    void setRecording(bool on);

    // Called before the first change of the object since the last mark; later calls cost a flag test.
    void recordState(VcDbObject& object);
    void recordCreated(VcDbObject& object);
    void recordErase(VcDbObject& object);
    void record(std::unique_ptr<UndoAction> action);

    // Position in the journal. A new mark makes the next change of any object keep its state again.
    std::size_t mark();
    std::size_t size() const { return m_changes.size(); }
    bool changedSince(std::size_t position) const { return size() > position; }

    // Takes back everything after the position and forgets it or, with keep, hands it over for redo().
    struct Span;
    struct VKHOST_API SpanDeleter {
        void operator()(Span* span) const;
    };
    using SpanPtr = std::unique_ptr<Span, SpanDeleter>;
    void rollback(std::size_t position);
    SpanPtr rollbackKeeping(std::size_t position);
    void redo(SpanPtr span);
    // Forgets how to undo; the drawing stays as it is.
    void clear();
    // Ids of the objects changed, created or erased after the position, each once, in order of the first change.
    struct Touched {
        VcDbObjectId id;
        bool created, erased, modified;
        const VcDbObject* before = nullptr;  // its state at the position, where it has changed since; the journal's
    };
    std::vector<Touched> touchedSince(std::size_t position) const;
    // The state that the object had at the position, or null if it has not changed since (or was made since).
    const VcDbObject* stateAt(std::size_t position, VcDbObjectId id) const;

private:
    void swapBack(Change& change, std::unique_ptr<VcDbObject>& spare);
    static void swapState(VcDbObject& object, std::unique_ptr<VcDbObject>& state, std::unique_ptr<VcDbObject>& spare);
    // Of the changes since the last mark, those ahead of the end.
    void forgetRecorded(std::size_t end);

    DatabaseCore& m_db;
    std::vector<Change> m_changes;
    std::size_t m_lastMark = 0;
    bool m_recording = false;
    bool m_swapping = false;
};
