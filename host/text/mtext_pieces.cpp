#include "host/text/mtext_pieces.h"

#include "host/text/font_library.h"
#include "host/text/text_line.h"

#include <cmath>

namespace vktext {

namespace {

// In heights of the stack's text.
constexpr double kUpperBase = 1.5;  // baseline of the upper part above that of the lower
constexpr double kRuleAt = 1.25;
constexpr double kDiagonalRise = 0.8;  // of the upper part of a slanted fraction
constexpr double kDiagonalGap = 0.5;
constexpr double kRuleOverhang = 0.1;

// Chinese, Japanese and Korean are broken between any two letters.
bool isIdeograph(char32_t c)
{
    return (c >= 0x2E80 && c <= 0x9FFF && c != 0x3001 && c != 0x3002) || (c >= 0xAC00 && c <= 0xD7AF) ||
           (c >= 0xF900 && c <= 0xFAFF) || (c >= 0x20000 && c <= 0x3FFFF);
}

StackGeometry diagonal(const Piece& piece, double h)
{
    const double gap = kDiagonalGap * h;
    StackGeometry g;
    g.upper = {0, kDiagonalRise * h};
    g.lower = {piece.upperWidth + gap, 0};
    g.hasRule = true;
    g.height = (1 + kDiagonalRise) * h;
    g.width = piece.upperWidth + gap + piece.lowerWidth;
    g.ruleFrom = {piece.upperWidth - gap / 4, 0};
    g.ruleTo = {piece.upperWidth + gap * 5 / 4, g.height};
    return g;
}

}  // namespace

StackGeometry stackGeometry(const Piece& piece, double h)
{
    if (piece.stack == StackKind::Diagonal)
        return diagonal(piece, h);
    StackGeometry g;
    g.upper = {0, kUpperBase * h};
    g.height = (1 + kUpperBase) * h;
    g.width = std::max(piece.upperWidth, piece.lowerWidth);
    if (piece.stack == StackKind::Horizontal) {
        g.width += 2 * kRuleOverhang * h;
        g.upper.x = (g.width - piece.upperWidth) / 2;
        g.lower.x = (g.width - piece.lowerWidth) / 2;
        g.hasRule = true;
        g.ruleFrom = {0, kRuleAt * h};
        g.ruleTo = {g.width, kRuleAt * h};
    }
    return g;
}

PieceMaker::PieceMaker(const MTextContent& content) : m_content(content), m_fonts(content.fonts.size()) {}

const Font& PieceMaker::fontOf(const CharFormat& format)
{
    const Font*& font = m_fonts[format.font];
    if (!font)
        font = &FontLibrary::instance().font(m_content.fonts[format.font]);
    return *font;
}

void PieceMaker::add(std::vector<Piece>& to, const MTextToken& token)
{
    switch (token.kind) {
    case MTextToken::Kind::Text:
        return addText(to, token);
    case MTextToken::Kind::Stack:
        to.push_back(stackPiece(token));
        return;
    case MTextToken::Kind::Tab:
        to.push_back({.kind = Piece::Kind::Tab, .format = token.format, .begin = token.begin, .end = token.end});
        return;
    default:
        return;
    }
}

void PieceMaker::addText(std::vector<Piece>& to, const MTextToken& token)
{
    const auto& chars = m_content.chars;
    for (std::size_t at = token.begin; at < token.end;) {
        Piece piece{.format = token.format, .begin = at};
        if (chars[at] == ' ') {
            piece.kind = Piece::Kind::Space;
            while (at < token.end && chars[at] == ' ')
                ++at;
        } else if (isIdeograph(chars[at])) {
            piece.breakBefore = true;
            ++at;
        } else {
            // The word behind an ideograph may begin a line as well.
            piece.breakBefore = at > 0 && isIdeograph(chars[at - 1]);
            while (at < token.end && chars[at] != ' ' && !isIdeograph(chars[at]))
                ++at;
        }
        piece.end = at;
        measure(piece);
        to.push_back(piece);
    }
}

void PieceMaker::measure(Piece& piece)
{
    const CharFormat& format = m_content.formats[piece.format];
    const Font& font = fontOf(format);
    const double h = format.height, scale = h * format.widthFactor, slant = std::tan(format.oblique);
    double pen = 0;
    for (std::size_t i = piece.begin; i < piece.end; ++i) {
        const GlyphMetrics& m = font.metrics(m_content.chars[i]);
        if (!m.blank) {
            if (i == piece.begin && !font.stroked())
                piece.left = m.left * scale;
            piece.right = std::max(piece.right, pen + m.right * scale + m.top * h * slant);
            // Lines of strokes keep their distance whatever rises above the capitals: dots, brackets, accents.
            piece.top = std::max(piece.top, (font.stroked() ? std::min(m.top, 1.0) : m.top) * h);
            piece.bottom = std::min(piece.bottom, m.bottom * h);
        }
        pen += m.advance * scale * format.tracking;
    }
    piece.width = pen;
    if (format.decorations != 0) {
        piece.left = std::min(piece.left, 0.0);
        piece.right = std::max(piece.right, pen);
        if (format.decorations & kUnderline)
            piece.bottom = std::min(piece.bottom, kUnderlineAt * h);
        if (format.decorations & kOverline)
            piece.top = std::max(piece.top, kOverlineAt * h);
    }
}

Piece PieceMaker::stackPiece(const MTextToken& token)
{
    Piece upper{.format = token.format, .begin = token.begin, .end = token.middle};
    Piece lower{.format = token.format, .begin = token.middle, .end = token.end};
    measure(upper);
    measure(lower);
    Piece piece{.kind = Piece::Kind::Stack,
                .stack = token.stack,
                .format = token.format,
                .begin = token.begin,
                .middle = token.middle,
                .end = token.end};
    piece.upperWidth = upper.width;
    piece.lowerWidth = lower.width;
    const StackGeometry g = stackGeometry(piece, m_content.formats[token.format].height);
    piece.width = piece.right = g.width;
    piece.top = upper.begin < upper.end ? g.upper.y + upper.top : g.height;
    piece.bottom = lower.bottom;
    return piece;
}

}  // namespace vktext
