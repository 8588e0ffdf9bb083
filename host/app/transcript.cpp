#include "host/app/transcript.h"

#include "host/edit/editor.h"

#include <cerrno>
#include <cstring>

namespace vk::app {

bool Transcript::start(bool toOutput, const std::string& file, bool append, std::string& error)
{
    m_toOutput = toOutput;
    if (!file.empty()) {
        m_file.reset(std::fopen(file.c_str(), append ? "ab" : "wb"));
        if (!m_file) {
            error = fmt::format("the transcript cannot be written to {}: {}", file, std::strerror(errno));
            return false;
        }
    }
    m_started = true;
    edit::Editor::instance().setTranscriptSink([this](std::string_view text) { write(text); });
    return true;
}

Transcript::~Transcript()
{
    if (m_started)
        edit::Editor::instance().setTranscriptSink({});
    flush();
}

void Transcript::write(std::string_view text)
{
    if (m_toOutput)
        std::fwrite(text.data(), 1, text.size(), stdout);
    note(text);
}

void Transcript::note(std::string_view text)
{
    if (m_file)
        std::fwrite(text.data(), 1, text.size(), m_file.get());
}

void Transcript::flush()
{
    std::fflush(stdout);
    if (m_file)
        std::fflush(m_file.get());
}

}  // namespace vk::app
