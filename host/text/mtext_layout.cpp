#include "host/text/mtext_layout.h"

#include "host/base/unicode.h"
#include "host/text/mtext_downwards.h"
#include "host/text/mtext_lines.h"
#include "host/text/mtext_parser.h"

#include <algorithm>
#include <cmath>

namespace vktext {

namespace {

constexpr int kMostColumns = 1000;

double positiveOr(double value, double otherwise) { return std::isfinite(value) && value > 0 ? value : otherwise; }

CharFormat baseFormat(const MTextSpec& spec)
{
    CharFormat format;
    format.height = std::clamp(positiveOr(spec.height, 1), 1e-100, 1e100);
    format.widthFactor = std::clamp(positiveOr(spec.style.widthFactor, 1), 0.01, 100.0);
    const double limit = 85 * M_PI / 180;
    format.oblique = std::isfinite(spec.style.oblique) ? std::clamp(spec.style.oblique, -limit, limit) : 0;
    return format;
}

// What a line needs to be put in its place once the width of all lines is known.
struct PlacedLineRecord {
    std::size_t fragmentBegin = 0, fragmentEnd = 0, ruleBegin = 0, ruleEnd = 0;
    double marginLeft = 0, marginRight = 0;
    ParagraphAlignment alignment = ParagraphAlignment::Left;
    double left = 0, right = 0;  // ink, from the pen
    double baseline = 0;
    int column = 0;
};

class MTextPlacer {
public:
    explicit MTextPlacer(const MTextSpec& spec)
        : m_spec(spec), m_base(baseFormat(spec)), m_content(parseMText(spec.contents, m_base, spec.style)),
          m_maker(m_content), m_factor(std::clamp(positiveOr(spec.spacingFactor, 1), 0.01, 100.0))
    {
        const bool inColumns = spec.columns.count > 0 && positiveOr(spec.columns.width, 0) > 0;
        m_columns = inColumns ? std::min(spec.columns.count, kMostColumns) : 0;
        m_width = inColumns ? spec.columns.width : positiveOr(spec.width, 0);
        m_gutter = inColumns ? std::max(0.0, positiveOr(spec.columns.gutter, 0)) : 0;
    }

    MTextLayout run()
    {
        for (const auto& token : m_content.tokens) {
            if (token.kind == MTextToken::Kind::Paragraph || token.kind == MTextToken::Kind::Column)
                endParagraph(m_content.paragraphs[token.paragraph], token.format, token.kind);
            else
                m_maker.add(m_pieces, token);
        }
        if (!m_content.tokens.empty())
            endParagraph(m_content.finalParagraph, m_content.finalFormat, MTextToken::Kind::Paragraph);
        placeLines();
        m_out.fonts = std::move(m_content.fonts);
        return std::move(m_out);
    }

private:
    void endParagraph(const ParagraphFormat& format, std::uint32_t endFormat, MTextToken::Kind end)
    {
        const double h = m_base.height;
        ParagraphFrame frame{m_width,          format.left * h,   (format.left + format.indent) * h,
                             format.right * h, format.tabs.get(), h};
        m_space += format.before * h;
        for (const auto& range : breakLines(frame, m_content, m_pieces))
            addLine(frame, format, range, endFormat);
        m_space = format.after * h;
        m_pieces.clear();
        if (end == MTextToken::Kind::Column && m_column + 1 < m_columns)
            nextColumn();
    }

    // Heights of a line above and below its baseline.
    struct LineHeights {
        double nominal = 0;  // of the largest letters
        double top = 0, bottom = 0;
        double stackDepth = 0;  // how far stacks reach down
    };

    LineHeights heightsOf(const LineRange& range, std::uint32_t emptyFormat) const
    {
        LineHeights line;
        for (std::size_t i = range.begin; i < range.end; ++i)
            if (m_pieces[i].kind == Piece::Kind::Word || m_pieces[i].kind == Piece::Kind::Stack)
                line.nominal = std::max(line.nominal, formatOf(m_pieces[i]).height);
        if (line.nominal == 0)
            line.nominal = range.begin < m_pieces.size() ? formatOf(m_pieces[range.begin]).height
                                                         : m_content.formats[emptyFormat].height;
        for (std::size_t i = range.begin; i < range.end; ++i) {
            const Piece& piece = m_pieces[i];
            const double rise = riseOf(piece, line.nominal);
            line.top = std::max(line.top, piece.top + rise);
            line.bottom = std::min(line.bottom, piece.bottom + rise);
            if (piece.kind == Piece::Kind::Stack)
                line.stackDepth = std::max(line.stackDepth, -(piece.bottom + rise));
        }
        line.top = std::max(line.top, line.nominal);
        return line;
    }

    // How far above the line's baseline a piece has its own.
    double riseOf(const Piece& piece, double lineHeight) const
    {
        const CharFormat& format = formatOf(piece);
        const double height =
            piece.kind == Piece::Kind::Stack ? stackGeometry(piece, format.height).height : format.height;
        switch (format.alignment) {
        case LineAlignment::Center:
            return (lineHeight - height) / 2;
        case LineAlignment::Top:
            return lineHeight - height;
        default:
            return 0;
        }
    }

    // Capitals as high as the line's largest letters stand five thirds apart; what is higher pushes its line down.
    double distanceTo(const LineHeights& line, const ParagraphFormat& format) const
    {
        using Spacing = ParagraphFormat::Spacing;
        const double value = positiveOr(format.spacingValue, 1);
        if (format.spacing == Spacing::Exactly)
            return value * m_base.height;
        if (m_spec.exactSpacing && format.spacing == Spacing::Inherited)
            return m_factor * kBaseDistance * m_base.height;
        double distance = m_factor * kBaseDistance * line.nominal;
        if (format.spacing == Spacing::Multiple)
            distance = value * kBaseDistance * line.nominal;
        if (format.spacing == Spacing::AtLeast)
            distance = std::max(kBaseDistance * line.nominal, value * m_base.height);
        return std::max(distance + line.top - line.nominal, m_stackDepth > 0 ? m_stackDepth + line.top : 0);
    }

    void addLine(const ParagraphFrame& frame, const ParagraphFormat& format, const LineRange& range,
                 std::uint32_t emptyFormat)
    {
        const LineHeights heights = heightsOf(range, emptyFormat);
        double baseline = m_linesInColumn == 0 ? -heights.top : m_baseline - m_space - distanceTo(heights, format);
        if (m_linesInColumn > 0 && m_column + 1 < m_columns && leavesColumn(-(baseline + heights.bottom))) {
            nextColumn();
            baseline = -heights.top;
        }
        m_space = 0;
        m_baseline = baseline;
        m_stackDepth = heights.stackDepth;
        ++m_linesInColumn;
        m_deepest = std::min(m_deepest, baseline + heights.bottom);
        setLine(frame, format, range, heights.nominal);
    }

    bool leavesColumn(double depth) const
    {
        const auto& heights = m_spec.columns.heights;
        if (heights.empty())
            return false;
        const double height = heights[std::min<std::size_t>(m_column, heights.size() - 1)];
        return height > 0 && depth > height * (1 + 1e-9);
    }

    void nextColumn()
    {
        ++m_column;
        m_linesInColumn = 0;
        m_space = 0;
    }

    // Sets the pieces of a line from the pen on; where the line begins is decided later.
    void setLine(const ParagraphFrame& frame, const ParagraphFormat& format, const LineRange& range, double nominal)
    {
        PlacedLineRecord line;
        line.alignment = alignmentOf(format);
        line.marginLeft = frame.leftOf(range.first);
        line.marginRight = frame.right;
        line.baseline = m_baseline;
        line.column = m_column;
        line.fragmentBegin = m_out.fragments.size();
        line.ruleBegin = m_out.rules.size();
        if (range.begin < range.end && m_pieces[range.begin].kind == Piece::Kind::Word)
            line.left = m_pieces[range.begin].left;
        const double stretch = justifiedGap(frame, line, range);
        double pen = 0;
        for (std::size_t i = range.begin; i < range.end; ++i)
            pen = setPiece(frame, line, i, pen, i == range.begin, stretch, nominal);
        line.fragmentEnd = m_out.fragments.size();
        line.ruleEnd = m_out.rules.size();
        m_lines.push_back(line);
    }

    double setPiece(const ParagraphFrame& frame, PlacedLineRecord& line, std::size_t i, double pen, bool first,
                    double stretch, double nominal)
    {
        const Piece& piece = m_pieces[i];
        if (piece.kind == Piece::Kind::Tab) {
            m_joins = false;
            return pen + tabWidth(frame, m_content, m_pieces, i + 1, line.marginLeft + pen);
        }
        const double y = m_baseline + riseOf(piece, nominal);
        if (piece.kind == Piece::Kind::Stack)
            setStack(piece, pen, y);
        else
            setText(piece, pen, y, !first && m_joins);
        if (piece.kind != Piece::Kind::Space)
            line.right = std::max(line.right, pen + piece.right);
        const bool stretches = piece.kind == Piece::Kind::Space && stretch > 0;
        m_joins = piece.kind != Piece::Kind::Stack && !stretches;
        return pen + piece.width + (stretches ? stretch : 0);
    }

    // What each gap of a justified line grows by; the last line of a paragraph keeps its own unless it is distributed.
    double justifiedGap(const ParagraphFrame& frame, const PlacedLineRecord& line, const LineRange& range) const
    {
        const bool wanted = line.alignment == ParagraphAlignment::Distributed ||
                            (line.alignment == ParagraphAlignment::Justified && !range.last);
        if (!wanted || frame.width <= 0)
            return 0;
        double length = 0;
        int gaps = 0;
        for (std::size_t i = range.begin; i < range.end; ++i) {
            if (m_pieces[i].kind == Piece::Kind::Tab)
                return 0;
            gaps += m_pieces[i].kind == Piece::Kind::Space;
            length += i + 1 < range.end ? m_pieces[i].width : m_pieces[i].right;
        }
        const double room = frame.width - line.marginLeft - line.marginRight - (length - line.left);
        return gaps > 0 && room > 0 ? room / gaps : 0;
    }

    void setText(const Piece& piece, double x, double y, bool joins)
    {
        if (!joins || m_out.fragments.empty() || m_lastFormat != piece.format)
            addFragment(piece.format, x, y);
        auto& fragment = m_out.fragments.back();
        appendChars(fragment, piece.begin, piece.end);
        fragment.width += piece.width;
    }

    void addFragment(std::uint32_t formatIndex, double x, double y)
    {
        const CharFormat& format = m_content.formats[formatIndex];
        MTextFragment& fragment = m_out.fragments.emplace_back();
        fragment.font = format.font;
        fragment.line = static_cast<std::uint32_t>(m_lines.size());
        fragment.height = format.height;
        fragment.widthFactor = format.widthFactor;
        fragment.oblique = format.oblique;
        fragment.tracking = format.tracking;
        fragment.color = format.color;
        fragment.decorations = format.decorations;
        fragment.x = x;
        fragment.y = y;
        m_lastFormat = formatIndex;
    }

    void appendChars(MTextFragment& fragment, std::size_t begin, std::size_t end)
    {
        for (std::size_t i = begin; i < end; ++i)
            appendUtf8(fragment.text, m_content.chars[i] == 0xA0 ? U' ' : m_content.chars[i]);
    }

    void setStack(const Piece& piece, double x, double y)
    {
        const StackGeometry g = stackGeometry(piece, formatOf(piece).height);
        setStackPart(piece, piece.begin, piece.middle, piece.upperWidth, {x + g.upper.x, y + g.upper.y});
        setStackPart(piece, piece.middle, piece.end, piece.lowerWidth, {x + g.lower.x, y + g.lower.y});
        if (g.hasRule)
            m_out.rules.push_back(
                {{x + g.ruleFrom.x, y + g.ruleFrom.y}, {x + g.ruleTo.x, y + g.ruleTo.y}, formatOf(piece).color});
    }

    void setStackPart(const Piece& piece, std::size_t begin, std::size_t end, double width, VcGePoint2d at)
    {
        if (begin == end)
            return;
        addFragment(piece.format, at.x, at.y);
        appendChars(m_out.fragments.back(), begin, end);
        m_out.fragments.back().width = width;
    }

    ParagraphAlignment alignmentOf(const ParagraphFormat& format) const
    {
        if (format.alignment != ParagraphAlignment::ByAttachment)
            return format.alignment;
        switch (attachmentColumn()) {
        case 1:
            return ParagraphAlignment::Center;
        case 2:
            return ParagraphAlignment::Right;
        default:
            return ParagraphAlignment::Left;
        }
    }

    int attachment() const { return m_spec.attachment >= 1 && m_spec.attachment <= 9 ? m_spec.attachment : 1; }
    int attachmentColumn() const { return (attachment() - 1) % 3; }
    int attachmentRow() const { return (attachment() - 1) / 3; }

    // Moves every line from the pen to its place in the frame, then the frame to its attachment.
    void placeLines()
    {
        const double columnWidth = m_width > 0 ? m_width : widestLine();
        const double frameWidth = columnWidth + m_column * (columnWidth + m_gutter);
        double left = frameWidth, right = 0;
        for (auto& line : m_lines) {
            const double x = line.column * (columnWidth + m_gutter) + startOf(line, columnWidth);
            left = std::min(left, x + line.left);
            right = std::max(right, x + line.right);
            shift(line, x - attachmentColumn() * frameWidth / 2, 0);
        }
        m_out.lines = m_lines.size();
        if (!m_lines.empty())
            setBox(frameWidth, std::min(left, right), right);
        for (auto& line : m_lines)
            shift(line, 0, m_out.box.top);
    }

    double widestLine() const
    {
        double widest = 0;
        for (const auto& line : m_lines)
            widest = std::max(widest, line.marginLeft + line.right - line.left + line.marginRight);
        return widest;
    }

    // Lines are aligned by their ink, so that a box around the text sits the same on every side.
    double startOf(const PlacedLineRecord& line, double columnWidth) const
    {
        const double from = line.marginLeft, to = columnWidth - line.marginRight;
        switch (line.alignment) {
        case ParagraphAlignment::Right:
            return to - line.right;
        case ParagraphAlignment::Center:
            return (from + to - line.left - line.right) / 2;
        default:
            return from - line.left;
        }
    }

    void setBox(double frameWidth, double left, double right)
    {
        const double middle = frameWidth / 2;
        switch (attachmentColumn()) {
        case 0:
            m_out.width = std::max(right, 0.0);
            break;
        case 1:
            m_out.width = 2 * std::max({right - middle, middle - left, 0.0});
            break;
        default:
            m_out.width = std::max(frameWidth - left, 0.0);
        }
        if (m_column > 0)
            m_out.width = std::max(m_out.width, frameWidth);
        m_out.height = -m_deepest;
        const double x = -attachmentColumn() * m_out.width / 2, y = attachmentRow() * m_out.height / 2;
        m_out.box = {x, y - m_out.height, x + m_out.width, y};
    }

    void shift(const PlacedLineRecord& line, double dx, double dy)
    {
        for (std::size_t i = line.fragmentBegin; i < line.fragmentEnd; ++i) {
            m_out.fragments[i].x += dx;
            m_out.fragments[i].y += dy;
        }
        for (std::size_t i = line.ruleBegin; i < line.ruleEnd; ++i) {
            m_out.rules[i].from = m_out.rules[i].from + VcGeVector2d(dx, dy);
            m_out.rules[i].to = m_out.rules[i].to + VcGeVector2d(dx, dy);
        }
    }

    const CharFormat& formatOf(const Piece& piece) const { return m_content.formats[piece.format]; }

    const MTextSpec& m_spec;
    const CharFormat m_base;
    MTextContent m_content;
    PieceMaker m_maker;
    const double m_factor;
    int m_columns = 0;  // 0: none
    double m_width = 0, m_gutter = 0;

    std::vector<Piece> m_pieces;  // of the paragraph at hand
    std::vector<PlacedLineRecord> m_lines;
    int m_column = 0;
    int m_linesInColumn = 0;
    double m_baseline = 0;    // of the latest line
    double m_stackDepth = 0;  // of the latest line
    double m_space = 0;       // between paragraphs, still to come
    double m_deepest = 0;     // y of the lowest ink
    bool m_joins = false;     // whether the next text may go on in the latest fragment
    std::uint32_t m_lastFormat = 0;
    MTextLayout m_out;
};

}  // namespace

MTextLayout layoutMText(const MTextSpec& spec)
{
    if (spec.flow == 3 || (spec.flow == 5 && spec.style.vertical))
        return layoutDownwards(spec, baseFormat(spec));
    return MTextPlacer(spec).run();
}

std::string fragmentText(const MTextFragment& fragment)
{
    static constexpr std::pair<Decoration, const char*> kCodes[] = {
        {kUnderline, "%%u"}, {kOverline, "%%o"}, {kStrike, "%%k"}};
    std::string text;
    for (const auto& [flag, code] : kCodes)
        if (fragment.decorations & flag)
            text += code;
    // A percent sign before another would be read as a code.
    for (std::size_t i = 0; i < fragment.text.size(); ++i)
        text += fragment.text[i] == '%' && fragment.text.compare(i, 2, "%%") == 0 ? "%%%" : fragment.text.substr(i, 1);
    return text;
}

TextStyleSpec fragmentStyle(const MTextLayout& layout, const MTextFragment& fragment)
{
    TextStyleSpec style;
    static_cast<FontRequest&>(style) = layout.fonts[fragment.font];
    style.widthFactor = fragment.widthFactor;
    style.oblique = fragment.oblique;
    return style;
}

static std::optional<Box> fragmentInk(const LineLooks& looks, const MTextFragment& fragment)
{
    const bool isCoded = fragment.decorations != 0 || fragment.text.find('%') != std::string::npos;
    return isCoded ? inkBox(looks, fragment.height, fragmentText(fragment), fragment.tracking)
                   : inkBox(looks, fragment.height, fragment.text, fragment.tracking);
}

static void include(Box& box, const Box& part)
{
    box = {std::min(box.left, part.left), std::min(box.bottom, part.bottom), std::max(box.right, part.right),
           std::max(box.top, part.top)};
}

Box drawnBox(const MTextLayout& layout)
{
    std::vector<LineLooks> looks(layout.fonts.size());
    Box box{HUGE_VAL, HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    for (const MTextFragment& fragment : layout.fragments) {
        LineLooks& own = looks[fragment.font];
        if (!own.font)
            own = lineLooks(fragmentStyle(layout, fragment));
        setLooks(own, fragment.widthFactor, fragment.oblique);
        if (const auto ink = fragmentInk(own, fragment))
            include(box,
                    {fragment.x + ink->left, fragment.y + ink->bottom, fragment.x + ink->right, fragment.y + ink->top});
    }
    for (const MTextRule& rule : layout.rules)
        include(box, {std::min(rule.from.x, rule.to.x), std::min(rule.from.y, rule.to.y),
                      std::max(rule.from.x, rule.to.x), std::max(rule.from.y, rule.to.y)});
    return box.left <= box.right ? box : layout.box;
}

}  // namespace vktext
