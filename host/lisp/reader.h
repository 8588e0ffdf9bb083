// Reader - turns text into data, one expression at a time.
#pragma once

#include "host/lisp/value.h"

#include <optional>
#include <vector>

namespace vk::lisp {

class SymbolTable;

class Reader {
public:
    // The text must outlive the reader.
    Reader(std::string_view text, SymbolTable& symbols) : m_text(text), m_symbols(symbols) {}

    // The next expression; nothing at the end of the text. Throws LispError on what is malformed.
    std::optional<Value> next();

private:
    struct OpenList {
        ListBuilder items;
        bool isQuote = false;  // 'x, which closes itself after one item
        enum { undotted, dotted, closed } tail = undotted;
    };

    void skipBlanks();
    void skipBlockComment();
    bool startsDot() const;
    void readDot();
    Value closeList();
    std::optional<Value> deliver(Value item);
    Value readText();
    void readEscape(std::string& out);
    void readOctal(std::string& out);
    void readHex(std::string& out);
    Value readAtom();

    std::string_view m_text;
    SymbolTable& m_symbols;
    std::size_t m_at = 0;
    std::vector<OpenList> m_open;
};

// A number as the dialect writes it, else nil. Whole numbers beyond 32 bits become reals.
Value parseNumber(std::string_view token);

// ExpressionScanner - tells when lines typed one after the other make whole expressions.
// Lines are fed with their line ends.
class VKHOST_API ExpressionScanner {
public:
    void feed(std::string_view text);
    // True also of a parenthesis too many: the reader tells about that.
    bool isComplete() const
    {
        return m_depth <= 0 && (m_state == plain || m_state == inComment || m_state == afterSemicolon);
    }
    std::int64_t depth() const { return m_depth; }

private:
    enum State { plain, inText, inTextAfterBackslash, inComment, afterSemicolon, inBlock, inBlockAfterBar };
    State after(char c);

    std::int64_t m_depth = 0;
    State m_state = plain;
};

}  // namespace vk::lisp
