// GroupValues: the value of a single group, whatever form its source had it in. What cannot be understood becomes a problem
// and leaves the value as it was.
#pragma once

#include "host/db/problems.h"
#include "host/db/tag.h"
#include "host/db/text_codec.h"

class DatabaseCore;

inline bool isChars(const Tag& tag) { return tag.form == Tag::Form::Raw || tag.form == Tag::Form::Utf8; }

class VKHOST_API GroupValues {
public:
    // Without a decoder raw texts are UTF-8; without a log problems are only counted as a failure.
    GroupValues(DatabaseCore& db, const TextDecoder* decoder, ProblemLog* problems);

    // The object that the groups to come belong to.
    void begin(std::uint64_t handle);
    // Since then a value could not be understood, or wrong() was called.
    bool failed() const { return m_failed; }

    // False, and a problem, when the value cannot be understood.
    bool real(const Tag& tag, double& value);
    bool integer(const Tag& tag, std::int64_t& value);
    bool handle(const Tag& tag, std::uint64_t& value);
    bool bytes(const Tag& tag, std::string& bytes);
    void text(const Tag& tag, std::string& utf8) const;
    // Adds a group to a list by the kind of its code; what does not fit its kind stays a text.
    void keep(const Tag& tag, TagList& list);

    void wrong(const Tag& tag, const char* expected);

private:
    void noteMended(const Tag& tag, const char* what);

    DatabaseCore& m_db;
    const TextDecoder* m_decoder;
    ProblemLog* m_problems;
    std::uint64_t m_handle = 0;
    bool m_failed = false;
    std::string m_scratch;
};
