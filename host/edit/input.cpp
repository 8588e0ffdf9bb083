#include "host/edit/input.h"

#include "host/base/unicode.h"

namespace vk::edit {

InputSource::~InputSource() = default;

// Arguments

ArgumentSource::ArgumentSource(RbPtr chain) : m_chain(std::move(chain)) {}

Input ArgumentSource::next(const Question&)
{
    if (!m_chain)
        return {Input::Exhausted{}};
    RbPtr node = takeFirst();
    if (node->restype == RTLB)
        return {takeList(std::move(node))};
    if (node->restype == RTSTR) {
        std::string text = rbUtf8(*node);
        if (text == "\\")
            return {Input::Pause{}};
        return {Input::Text{std::move(text), true}};
    }
    return {std::move(node)};
}

RbPtr ArgumentSource::takeFirst()
{
    RbPtr node(m_chain.release());
    m_chain.reset(node->rbnext);
    node->rbnext = nullptr;
    return node;
}

// A list with all it holds, its marks included.
RbPtr ArgumentSource::takeList(RbPtr first)
{
    RbBuilder list;
    list.append(std::move(first));
    for (int depth = 1; depth > 0 && m_chain;) {
        RbPtr node = takeFirst();
        depth += node->restype == RTLB ? 1 : node->restype == RTLE || node->restype == RTDOTE ? -1 : 0;
        list.append(std::move(node));
    }
    return list.take();
}

void ArgumentSource::feed(RbPtr chain)
{
    if (!m_chain) {
        m_chain = std::move(chain);
        return;
    }
    resbuf* last = m_chain.get();
    while (last->rbnext)
        last = last->rbnext;
    last->rbnext = chain.release();
}

void ArgumentSource::dropEnters()
{
    while (m_chain && m_chain->restype == RTSTR && rbUtf8(*m_chain).empty())
        takeFirst();
}

// Text

bool TextSource::isExhausted() const { return m_ended && !m_hasLine; }

std::string TextSource::position() const
{
    return m_name.empty() ? std::string() : "line " + std::to_string(m_number) + " of " + m_name;
}

bool TextSource::fill(const Question& question)
{
    while (!m_hasLine) {
        std::optional<std::string> line = m_ended ? std::nullopt : readLine(question.prompt);
        if (!line) {
            m_ended = true;
            return false;
        }
        ++m_number;
        if (line->ends_with('\r'))
            line->pop_back();
        if (m_stripComments && line->starts_with(';'))
            continue;
        m_line = std::move(*line);
        m_at = 0;
        m_hasLine = true;
    }
    return true;
}

namespace {

bool takesWholeLine(const Question& question) { return question.kind == Question::Kind::Text; }

// Where the parenthesis that opens at the beginning is closed, or npos. Strings and comments may hold others.
std::size_t endOfExpression(std::string_view text)
{
    int depth = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '"') {
            for (++i; i < text.size() && text[i] != '"'; ++i)
                if (text[i] == '\\')
                    ++i;
        } else if (c == ';' && i + 1 < text.size() && text[i + 1] == '|') {
            const std::size_t close = text.find("|;", i + 2);
            if (close == std::string_view::npos)
                return close;
            i = close + 1;
        } else if (c == ';') {
            while (i < text.size() && text[i] != '\n')
                ++i;
        } else if (c == '(') {
            ++depth;
        } else if (c == ')' && --depth == 0) {
            return i + 1;
        }
    }
    return std::string_view::npos;
}

}

// The expression at the present place, with as many further lines as it needs. An unfinished one at the end of the text is
// handed on as it is, for the reader to complain about.
Input TextSource::takeExpression()
{
    std::string text = m_line.substr(m_at);
    std::size_t end = endOfExpression(text);
    while (end == std::string::npos) {
        std::optional<std::string> more = readLine("(_> ");
        if (!more) {
            m_ended = true;
            m_hasLine = false;
            return {Input::Expression{std::move(text)}};
        }
        ++m_number;
        text += "\n" + *more;
        end = endOfExpression(text);
    }
    m_line = text.substr(end);
    m_at = 0;
    m_hasLine = m_line.find_first_not_of(" \t") != std::string::npos;
    if (m_hasLine)
        m_at = m_line.find_first_not_of(" \t");
    return {Input::Expression{text.substr(0, end)}};
}

namespace {

bool areDigits(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c); });
}

// "1/2\"" behind feet and inches.
bool isInchFraction(std::string_view text)
{
    const std::size_t slash = text.find('/');
    return text.ends_with('"') && slash != text.npos && areDigits(text.substr(0, slash)) &&
           areDigits(text.substr(slash + 1, text.size() - slash - 2));
}

// The blank that ends the answer. In 1'-6 1/2", as lengths are printed, the first one does not.
std::size_t endOfToken(std::string_view rest)
{
    const std::size_t blank = rest.find_first_of(" \t");
    if (blank == rest.npos)
        return blank;
    const std::string_view token = rest.substr(0, blank);
    const std::size_t feet = token.rfind('\'');
    if (feet == token.npos || !(areDigits(token.substr(feet + 1)) ||
                                (token.substr(feet + 1).starts_with('-') && areDigits(token.substr(feet + 2)))))
        return blank;
    const std::size_t next = rest.find_first_of(" \t", blank + 1);
    return isInchFraction(rest.substr(blank + 1, next == rest.npos ? rest.npos : next - blank - 1)) ? next : blank;
}

}

Input TextSource::next(const Question& question)
{
    if (!fill(question))
        return {Input::Exhausted{}};
    const std::string_view rest = std::string_view(m_line).substr(m_at);
    const bool literal = takesWholeLine(question);
    if (literal && rest == "(cancel)") {
        m_hasLine = false;
        return {Input::Cancel{}};
    }
    if (!literal && rest.starts_with('('))
        return takeExpression();
    if (literal) {
        m_hasLine = false;
        return {Input::Text{std::string(rest), true}};
    }
    if (rest.starts_with('"') && question.kind == Question::Kind::Word) {
        const std::size_t close = rest.find('"', 1);
        if (close != std::string_view::npos && (close + 1 == rest.size() || rest[close + 1] == ' ')) {
            std::string quoted(rest.substr(1, close - 1));
            m_at += close + 1;
            if (m_at >= m_line.size())
                m_hasLine = false;
            else
                ++m_at;
            return {Input::Text{std::move(quoted), !m_hasLine}};
        }
    }
    const std::size_t blank = endOfToken(rest);
    if (blank == std::string_view::npos) {
        m_hasLine = false;
        return {Input::Text{std::string(rest), true}};
    }
    m_at += blank + 1;
    // What stands behind the last blank of a line is nothing: the blank was the Enter.
    if (m_at >= m_line.size())
        m_hasLine = false;
    return {Input::Text{std::string(rest.substr(0, blank)), !m_hasLine}};
}

ScriptSource::ScriptSource(std::string name, std::string text) : m_text(std::move(text)) { m_name = std::move(name); }

std::optional<std::string> ScriptSource::readLine(const std::string&)
{
    if (m_next >= m_text.size())
        return std::nullopt;
    const std::size_t end = std::min(m_text.find('\n', m_next), m_text.size());
    std::string line = m_text.substr(m_next, end - m_next);
    m_next = end + 1;
    return line;
}

}
