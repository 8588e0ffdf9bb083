// Groups as the bytes of a DXF file, ASCII or binary.
#pragma once

#include "host/db/field_writer.h"
#include "host/io/byte_sink.h"
#include "host/io/dxf_text.h"

#include <cstring>
#include <memory>

struct OutputFormat {
    DxfVersion version = DxfVersion::R2018;
    bool binary = false;
    bool crLf = true;
};

class GroupOutput : public GroupSink {
public:
    static std::unique_ptr<GroupOutput> create(const OutputFormat& format, const CodePage& page, ByteSink& sink);
    // Hands on what is still waiting.
    void flush();
    std::size_t bytes() const { return m_flushed + m_used; }

protected:
    GroupOutput(const CodePage& page, ByteSink& sink);
    // Where that many bytes may be put; took() says how far they reach.
    char* room(std::size_t size)
    {
        if (m_buffer.size() - m_used < size)
            makeRoom(size);
        return m_buffer.data() + m_used;
    }
    void took(const char* end) { m_used = static_cast<std::size_t>(end - m_buffer.data()); }
    void put(std::string_view bytes) { took(std::copy(bytes.begin(), bytes.end(), room(bytes.size()))); }
    void putText(std::string_view utf8);

private:
    static constexpr std::size_t kBufferSize = 1 << 20;
    void makeRoom(std::size_t size);

    std::string m_buffer;
    std::size_t m_used = 0;
    DxfTextEncoder m_encoder;
    ByteSink& m_sink;
    std::size_t m_flushed = 0;
};
