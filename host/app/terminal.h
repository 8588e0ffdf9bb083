// Typing at a terminal: editing of the line, history that lasts, completion of command names with Tab.
#pragma once

#include "host/edit/input.h"

#include <functional>

namespace vk::app {

class TerminalSource : public edit::TextSource {
public:
    // The note gets what stood on the screen: prompts and answers. The history is kept in the file.
    TerminalSource(std::string historyFile, std::function<void(std::string_view)> note);
    ~TerminalSource() override;

    edit::Input next(const edit::Question& question) override;
    bool echoes() const override { return false; }
    bool isInteractive() const override { return true; }

protected:
    std::optional<std::string> readLine(const std::string& prompt) override;

private:
    struct LineEditor;
    std::unique_ptr<LineEditor> m_editor;
    std::function<void(std::string_view)> m_note;
    bool m_wasCancelled = false;
};

}  // namespace vk::app
