#include "host/edit/editor.h"

#include "host/base/console.h"
#include "host/db/database.h"
#include "host/edit/active_command.h"
#include "host/edit/sysvars.h"

#include <utility>

namespace vk::edit {

namespace {

Editor* s_instance = nullptr;

}

Editor& Editor::instance()
{
    static Editor editor;
    return editor;
}

Editor::Editor()
{
    s_instance = this;
    setConsoleSink([this](std::string_view text) { print(text); });
    m_vars = std::make_unique<SysVars>(*this);
}

Editor::~Editor()
{
    setConsoleSink({});
    closeDrawing();
}

// Drawings

void Editor::openDrawing(std::unique_ptr<VcDbDatabase> drawing)
{
    closeDrawing();
    m_drawing = std::move(drawing);
    m_undo = std::make_unique<UndoControl>(m_drawing->core());
    m_vars->drawingOpened();
    lastPoint = {};
    lastAngle = 0;
}

std::unique_ptr<VcDbDatabase> Editor::closeDrawing()
{
    m_active.clear();
    previousSelection.reset();
    pickFirst.reset();
    m_undo.reset();
    return std::move(m_drawing);
}

void Editor::setLisp(std::unique_ptr<LispEvaluator> lisp) { m_lisp = std::move(lisp); }

// Output

void Editor::print(std::string_view text)
{
    if (m_current && m_current->isDriven() && m_vars->integer("CMDECHO") == 0)
        return;
    m_transcript.append(text);
    if (m_transcript.size() > kTranscriptKept * 2)
        m_transcript.erase(0, m_transcript.size() - kTranscriptKept);
    m_atLineStart = text.empty() ? m_atLineStart : text.back() == '\n';
    if (m_sink)
        m_sink(text);
}

void Editor::printLine(std::string_view text) { print((m_atLineStart ? "" : "\n") + std::string(text) + "\n"); }

// Prompts begin a line of their own; modules put a line break in front, which an empty line would be too much for.
void Editor::printPrompt(std::string_view prompt)
{
    if (m_atLineStart && prompt.starts_with('\n'))
        prompt.remove_prefix(1);
    print((m_atLineStart || prompt.starts_with('\n') ? "" : "\n") + std::string(prompt));
}

void Editor::progress(std::string_view what, double done)
{
    if (onProgress)
        onProgress(what, done);
}

// Interrupting

bool Editor::isInterrupted() const { return m_interrupted; }
void Editor::interrupt() { m_interrupted = true; }

void Editor::throwIfInterrupted() const
{
    if (m_interrupted)
        throw CommandCancelled();
}

// Those that wait for more arguments are running too.
std::vector<std::string> Editor::runningCommands() const
{
    std::vector<std::string> names = m_names;
    for (const auto& active : m_active)
        if (std::find(names.begin(), names.end(), active->entry().name) == names.end())
            names.push_back(active->entry().name);
    return names;
}

void Editor::record(const std::string& name, CommandRecord::Status status) { m_records.push_back({name, status}); }

InitGet Editor::takeInitGet() { return std::exchange(m_init, {}); }

Editor::Step::Step(Editor& editor, std::string name) : m_editor(editor) { m_editor.undo().beginStep(std::move(name)); }
Editor::Step::~Step() { m_editor.undo().endStep(); }

}
