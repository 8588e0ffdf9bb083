#include "host/edit/undo_control.h"

#include "host/db/database.h"
#include "host/db/hatch_follow.h"

namespace vk::edit {

UndoControl::UndoControl(DatabaseCore& db) : m_db(db) { m_db.undo().setRecording(true); }

void UndoControl::beginStep(std::string name, Owner owner)
{
    if (m_depth++ > 0)
        return;
    m_owner = owner;
    m_stepName = std::move(name);
    m_stepStart = m_db.undo().mark();
    m_innerOpen.clear();
    m_innerClosed.clear();
}

void UndoControl::endStep()
{
    if (--m_depth > 0)
        return;
    followBoundaries(m_db, m_stepStart);
    keepStep();
    m_owner = Owner::Command;
}

// What has been done since the step began becomes a step of its own.
void UndoControl::settleOpenStep()
{
    if (m_depth == 0)
        return;
    keepStep();
    moveOpenStep();
}

// The open step begins here.
void UndoControl::moveOpenStep()
{
    if (m_depth > 0)
        m_stepStart = m_db.undo().mark();
}

void UndoControl::keepStep()
{
    UndoJournal& journal = m_db.undo();
    if (!journal.changedSince(m_stepStart))
        return;
    m_redo.clear();
    if (m_mode == Mode::None) {
        journal.clear();
        return;
    }
    m_steps.push_back({m_stepName, m_stepStart});
    if (m_mode == Mode::One && m_steps.size() > 1) {
        // Only the last step can be undone; the older changes stay in the journal beneath it until it is cleared.
        m_steps.erase(m_steps.begin(), m_steps.end() - 1);
    }
    journal.mark();
}

std::vector<std::string> UndoControl::undo(int count)
{
    std::vector<std::string> names;
    settleOpenStep();
    if (inGroup())
        closeGroup();
    while (count-- > 0 && !m_steps.empty() && !m_steps.back().isMark) {
        Step step = std::move(m_steps.back());
        m_steps.pop_back();
        m_redo.push_back({step.name, m_db.undo().rollbackKeeping(step.position)});
        names.push_back(std::move(step.name));
    }
    moveOpenStep();
    return names;
}

std::vector<std::string> UndoControl::redo(int count)
{
    std::vector<std::string> names;
    settleOpenStep();
    while (count-- > 0 && !m_redo.empty()) {
        Redo redo = std::move(m_redo.back());
        m_redo.pop_back();
        m_steps.push_back({redo.name, m_db.undo().mark()});
        m_db.undo().redo(std::move(redo.span));
        names.push_back(std::move(redo.name));
    }
    moveOpenStep();
    return names;
}

void UndoControl::mark()
{
    settleOpenStep();
    m_steps.push_back({"Mark", m_db.undo().mark(), true});
}

bool UndoControl::hasMark() const
{
    return std::any_of(m_steps.begin(), m_steps.end(), [](const Step& s) { return s.isMark; });
}

std::vector<std::string> UndoControl::back(bool all, bool& foundMark)
{
    foundMark = hasMark();
    if (!foundMark && !all)
        return {};
    std::vector<std::string> names = undo(int(m_steps.size()));
    if (foundMark)
        m_steps.pop_back();
    return names;
}

void UndoControl::beginGroup()
{
    settleOpenStep();
    if (m_groupDepth++ == 0)
        m_groupFirst = m_steps.size();
}

void UndoControl::endGroup()
{
    settleOpenStep();
    if (m_groupDepth > 0 && --m_groupDepth == 0)
        closeGroup();
}

// The steps since the group began become one.
void UndoControl::closeGroup()
{
    m_groupDepth = 0;
    const std::size_t first = m_groupFirst;
    if (first >= m_steps.size())
        return;
    if (std::any_of(m_steps.begin() + std::ptrdiff_t(first), m_steps.end(), [](const Step& s) { return s.isMark; }))
        return;
    m_steps[first].name = "Group";
    m_steps.erase(m_steps.begin() + std::ptrdiff_t(first) + 1, m_steps.end());
}

void UndoControl::beginInner() { m_innerOpen.push_back(m_db.undo().mark()); }

void UndoControl::endInner()
{
    if (m_innerOpen.empty())
        return;
    const std::size_t begin = m_innerOpen.back();
    m_innerOpen.pop_back();
    const std::size_t end = m_db.undo().mark();
    // A group takes in those that closed within it.
    std::erase_if(m_innerClosed, [&](const Inner& i) { return i.begin >= begin; });
    if (end > begin)
        m_innerClosed.push_back({begin, end});
}

bool UndoControl::undoInner()
{
    UndoJournal& journal = m_db.undo();
    if (!m_innerClosed.empty()) {
        const Inner last = m_innerClosed.back();
        m_innerClosed.pop_back();
        journal.rollback(last.begin);
        return true;
    }
    if (!journal.changedSince(m_stepStart))
        return false;
    journal.rollback(m_stepStart);
    return true;
}

void UndoControl::setMode(Mode mode)
{
    m_mode = mode;
    if (mode == Mode::None) {
        m_steps.clear();
        m_redo.clear();
        m_db.undo().clear();
    }
    m_db.undo().setRecording(true);
}

}
