// The groups of a DXF file, object by object: one for ASCII files and one for binary ones.
#pragma once

#include "host/base/api.h"
#include "host/db/tag.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class ProblemLog;

// Group 0 with the groups behind it, up to the next group 0. Texts are Raw and belong to the source.
struct DxfRecord {
    std::string_view type;
    std::uint32_t line = 0;
    std::vector<Tag> tags;

    const Tag* find(int code) const;
    std::string_view text(int code) const;
};

// Where a file's structure broke.
struct DxfFault {
    std::uint32_t line = 0;
    std::string text;
};

class VKHOST_API DxfSource {
public:
    // With recover, what cannot be understood is skipped and noted; without, it ends the file with a fault.
    static std::unique_ptr<DxfSource> open(std::string_view bytes, bool recover, ProblemLog& problems);
    virtual ~DxfSource();

    // False at the end of the file or at a fault.
    virtual bool next(DxfRecord& record) = 0;
    // Groups ahead of the first group 0: comments of the program that wrote the file.
    const std::vector<Tag>& preamble() const { return m_preamble; }
    const std::optional<DxfFault>& fault() const { return m_fault; }
    virtual std::size_t position() const = 0;
    virtual bool isBinary() const = 0;
    virtual bool usesCrLf() const { return true; }
    virtual std::uint32_t line() const = 0;
    std::size_t commentsDropped() const { return m_commentsDropped; }

protected:
    std::vector<Tag> m_preamble;
    std::optional<DxfFault> m_fault;
    std::size_t m_commentsDropped = 0;
};

// "ASCII" content starts with a group code on a line of its own; binary with its sentinel.
VKHOST_API bool isBinaryDxf(std::string_view bytes);
VKHOST_API bool looksLikeAsciiDxf(std::string_view bytes);
VKHOST_API extern const std::string_view kBinarySentinel;
