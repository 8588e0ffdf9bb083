// Where the bytes of a file go.
#pragma once

#include <string>
#include <string_view>

class ByteSink {
public:
    virtual ~ByteSink() = default;
    virtual void write(std::string_view bytes) = 0;
};

class StringSink final : public ByteSink {
public:
    explicit StringSink(std::string& out) : m_out(out) {}
    void write(std::string_view bytes) override { m_out += bytes; }

private:
    std::string& m_out;
};

class NullSink final : public ByteSink {
public:
    void write(std::string_view) override {}
};
