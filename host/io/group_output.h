// Groups as the bytes of a DXF file, ASCII or binary.
#pragma once

#include "host/db/field_writer.h"
#include "host/io/byte_sink.h"
#include "host/io/dxf_text.h"

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
    std::size_t bytes() const { return m_flushed + m_buffer.size(); }

protected:
    GroupOutput(const CodePage& page, ByteSink& sink);
    void flushWhenFull()
    {
        if (m_buffer.size() >= kBufferSize)
            flush();
    }
    void putText(std::string_view utf8);

    std::string m_buffer;

private:
    static constexpr std::size_t kBufferSize = 1 << 20;
    DxfTextEncoder m_encoder;
    ByteSink& m_sink;
    std::size_t m_flushed = 0;
};
