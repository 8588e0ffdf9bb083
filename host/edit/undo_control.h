// Undo as people know it: steps of one command each, marks, groups, redo; and the inner groups of a running command.
#pragma once

#include "host/base/api.h"
#include "host/db/undo.h"

#include <string>
#include <vector>

namespace vk::edit {

class VKHOST_API UndoControl {
public:
    explicit UndoControl(DatabaseCore& db);

    // Around each command at the top. A step that no command owns, such as a Lisp expression typed at the prompt, does not
    // bound what is undone within it: U, marks and groups there act on the steps before as they do at the prompt.
    enum class Owner { Command, Nobody };
    void beginStep(std::string name, Owner owner = Owner::Command);
    // Keeps the step where something changed. A new step forgets what could be redone.
    void endStep();
    // As a command asks it that has a step of its own: whether that belongs to another one's.
    bool isNested() const { return m_depth > (m_owner == Owner::Nobody ? 1 : 0); }

    // Takes back up to count steps; returns the names of those taken back. Stops before a mark unless told otherwise.
    std::vector<std::string> undo(int count);
    std::vector<std::string> redo(int count);
    void mark();
    // Back to the last mark; without one, everything if all is set. Names of what was taken back.
    std::vector<std::string> back(bool all, bool& foundMark);
    bool hasMark() const;
    void beginGroup();
    void endGroup();
    bool inGroup() const { return m_groupDepth > 0; }

    // Within a running command: what _BE and _E bracket, and U.
    void beginInner();
    void endInner();
    // The last closed inner group that still stands, else all the command has done so far. False when nothing was done.
    bool undoInner();

    enum class Mode { All, One, None };
    Mode mode() const { return m_mode; }
    void setMode(Mode mode);
    std::size_t stepCount() const { return m_steps.size(); }
    std::size_t stepStart() const { return m_stepStart; }  // of the running or last command, in the journal

private:
    struct Step {
        std::string name;
        std::size_t position;  // where its changes begin
        bool isMark = false;
    };
    struct Redo {
        std::string name;
        UndoJournal::SpanPtr span;
    };
    void closeGroup();
    void keepStep();
    void settleOpenStep();
    void moveOpenStep();
    DatabaseCore& m_db;
    std::vector<Step> m_steps;
    std::vector<Redo> m_redo;
    std::vector<std::size_t> m_innerOpen;
    struct Inner {
        std::size_t begin, end;
    };
    std::vector<Inner> m_innerClosed;
    std::size_t m_stepStart = 0;
    std::size_t m_groupFirst = 0;
    std::string m_stepName;
    Owner m_owner = Owner::Command;
    int m_depth = 0;
    int m_groupDepth = 0;
    Mode m_mode = Mode::All;
};

}  // namespace vk::edit
