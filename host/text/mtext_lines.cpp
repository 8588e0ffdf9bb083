#include "host/text/mtext_lines.h"

#include <algorithm>
#include <cmath>

namespace vktext {

namespace {

constexpr double kDefaultTab = 4;  // text heights

bool isBlank(const Piece& piece) { return piece.kind == Piece::Kind::Space || piece.kind == Piece::Kind::Tab; }

struct Stop {
    double at;
    TabKind kind;
};

Stop nextStop(const ParagraphFrame& frame, double pen)
{
    const double h = frame.textHeight;
    if (frame.tabs)
        for (const auto& tab : *frame.tabs)
            if (tab.at * h > pen + 1e-9 * h)
                return {tab.at * h, tab.kind};
    const double step = kDefaultTab * h;
    return {(std::floor(pen / step + 1e-9) + 1) * step, TabKind::Left};
}

// Of what stands between a tab and the next one or the end of the paragraph, and the part before its decimal sign.
struct TabbedText {
    double width = 0, beforePoint = 0;
};

TabbedText textBehindTab(const MTextContent& content, const std::vector<Piece>& pieces, std::size_t next)
{
    TabbedText text;
    bool pointSeen = false;
    for (std::size_t i = next; i < pieces.size() && pieces[i].kind != Piece::Kind::Tab; ++i) {
        const Piece& piece = pieces[i];
        text.width += piece.width;
        const auto chars = std::u32string_view(content.chars).substr(piece.begin, piece.end - piece.begin);
        const auto point = chars.find_first_of(U".,");
        if (!pointSeen && point != chars.npos)
            text.beforePoint += piece.width * static_cast<double>(point) / static_cast<double>(chars.size());
        else if (!pointSeen)
            text.beforePoint += piece.width;
        pointSeen |= point != chars.npos;
    }
    return text;
}

class Breaker {
public:
    Breaker(const ParagraphFrame& frame, const MTextContent& content, const std::vector<Piece>& pieces)
        : m_frame(frame), m_content(content), m_pieces(pieces)
    {
    }

    std::vector<LineRange> run()
    {
        begin(0);
        for (std::size_t i = 0; i < m_pieces.size(); ++i) {
            if (mayBreakBefore(i))
                m_break = i;
            if (overflows(i) && m_break > m_begin)
                wrapAt(m_break, i);
            advance(i);
        }
        end(m_pieces.size());
        m_lines.back().last = true;
        return std::move(m_lines);
    }

private:
    bool mayBreakBefore(std::size_t i) const
    {
        return i > m_begin && !isBlank(m_pieces[i]) && (isBlank(m_pieces[i - 1]) || m_pieces[i].breakBefore);
    }

    bool overflows(std::size_t i) const
    {
        const Piece& piece = m_pieces[i];
        const double room = m_frame.width - m_frame.right;
        return m_frame.width > 0 && !isBlank(piece) && m_pen + piece.right > room + 1e-9 * m_frame.width;
    }

    // A piece is moved to a new line at most once: until the next break it is glued to that line's beginning.
    void wrapAt(std::size_t at, std::size_t current)
    {
        end(at);
        begin(at);
        for (std::size_t i = at; i < current; ++i)
            advance(i);
    }

    void advance(std::size_t i)
    {
        const Piece& piece = m_pieces[i];
        m_pen += piece.kind == Piece::Kind::Tab ? tabWidth(m_frame, m_content, m_pieces, i + 1, m_pen) : piece.width;
    }

    void begin(std::size_t at)
    {
        m_begin = m_break = at;
        m_pen = m_frame.leftOf(m_lines.empty());
    }

    void end(std::size_t at)
    {
        std::size_t last = at;
        while (last > m_begin && m_pieces[last - 1].kind == Piece::Kind::Space)
            --last;
        m_lines.push_back({m_begin, last, m_lines.empty(), false});
    }

    const ParagraphFrame& m_frame;
    const MTextContent& m_content;
    const std::vector<Piece>& m_pieces;
    std::size_t m_begin = 0, m_break = 0;
    double m_pen = 0;
    std::vector<LineRange> m_lines;
};

}  // namespace

double tabWidth(const ParagraphFrame& frame, const MTextContent& content, const std::vector<Piece>& pieces,
                std::size_t next, double pen)
{
    const Stop stop = nextStop(frame, pen);
    const double room = stop.at - pen;
    if (stop.kind == TabKind::Left)
        return room;
    const TabbedText text = textBehindTab(content, pieces, next);
    const double back = stop.kind == TabKind::Center  ? text.width / 2
                        : stop.kind == TabKind::Right ? text.width
                                                      : text.beforePoint;
    return std::max(0.0, room - back);
}

std::vector<LineRange> breakLines(const ParagraphFrame& frame, const MTextContent& content,
                                  const std::vector<Piece>& pieces)
{
    return Breaker(frame, content, pieces).run();
}

}  // namespace vktext
