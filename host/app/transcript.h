// Where the transcript goes: standard output, a file, or both.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace vk::app {

class Transcript {
public:
    // Takes over what the editor prints. False with a sentence when the file cannot be written.
    bool start(bool toOutput, const std::string& file, bool append, std::string& error);
    ~Transcript();
    // What the person saw and typed without the editor printing it: prompts and answers at a terminal.
    void note(std::string_view text);
    void flush();

private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    void write(std::string_view text);
    std::unique_ptr<std::FILE, Close> m_file;
    bool m_toOutput = true;
    bool m_started = false;
};

}  // namespace vk::app
