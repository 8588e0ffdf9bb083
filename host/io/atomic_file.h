// A file that appears whole or not at all: written to a temporary beside the target, synced, renamed. What stood there
// becomes NAME.bak.
#pragma once

#include "host/base/api.h"
#include "host/io/byte_sink.h"

class VKHOST_API AtomicFile final : public ByteSink {
public:
    explicit AtomicFile(const std::string& target);
    // Takes the temporary away unless commit() has put it in place.
    ~AtomicFile() override;
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    void write(std::string_view bytes) override;
    bool commit(bool keepBackup);
    // Empty while all went well; else why the target was left as it was.
    const std::string& error() const { return m_error; }
    const std::string& backup() const { return m_backup; }  // empty when nothing stood there

private:
    void fail(const char* what);
    bool flushToDisk();
    bool moveBackup();
    void syncFolder() const;

    std::string m_target, m_temporary, m_backup, m_error;
    int m_file = -1;
};
