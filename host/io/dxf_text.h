// Texts of a DXF file: its code page or UTF-8, \U+XXXX escapes, carets for control characters.
#pragma once

#include "host/db/field_visitor.h"
#include "host/db/text_codec.h"

#include <string>
#include <string_view>

class CodePage;

// Files from R2007 on are UTF-8 whatever page they name; older ones have the page they name, or 1252.
VKHOST_API const CodePage& codePageOfFile(DxfVersion version, std::string_view pageName);

class VKHOST_API DxfTextDecoder final : public TextDecoder {
public:
    explicit DxfTextDecoder(const CodePage& page) : m_page(page) {}
    void decode(std::string_view raw, std::string& out) const override;

private:
    const CodePage& m_page;
};

// The bytes for a text; control characters become "^J" and the like, a caret "^ ", what the page lacks \U+XXXX.
class VKHOST_API DxfTextEncoder {
public:
    explicit DxfTextEncoder(const CodePage& page) : m_page(page) {}
    // True when the text stands in the file as it is.
    bool isPlain(std::string_view utf8) const;
    std::string encode(std::string_view utf8) const;

private:
    const CodePage& m_page;
};
