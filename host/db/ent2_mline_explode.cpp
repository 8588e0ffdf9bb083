// A multiline as lines and arcs: its elements, their joints, and its ends.
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/ent_util.h"
#include "host/geom/arbitrary_axis.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_misc.h"
#include "sdk/vcdb_objects.h"

#include <algorithm>

namespace {

using Style = VcDbMlineStyle;

class MlinePieces {
public:
    MlinePieces(const VcDbMline& mline, const Style* style, std::vector<VcDbEntity*>& pieces)
        : m_mline(mline), m_vertices(mline.vertices()), m_style(style), m_pieces(pieces)
    {
    }

    void addAll()
    {
        const std::size_t n = m_vertices.size();
        const std::size_t segments = m_mline.closedMline() ? n : n - 1;
        for (std::size_t i = 0; i < segments; ++i)
            for (std::size_t e = 0; e < m_vertices[i].elements.size(); ++e)
                addElement(m_vertices[i], m_vertices[(i + 1) % n], e);
        const int flags = m_style ? m_style->flags() : 0;
        if (flags & Style::kMitres)
            for (std::size_t i = m_mline.closedMline() ? 0 : 1; i < (m_mline.closedMline() ? n : n - 1); ++i)
                addAcross(m_vertices[i]);
        if (m_mline.closedMline())
            return;
        addEnd(m_vertices.front(), -m_vertices.front().direction, flags & Style::kStartSquareCap,
               flags & Style::kStartRoundCap, flags & Style::kStartInnerArcs);
        const VcGeVector3d ahead = m_vertices[n - 2].direction;
        addEnd(m_vertices.back(), ahead, flags & Style::kEndSquareCap, flags & Style::kEndRoundCap,
               flags & Style::kEndInnerArcs);
    }

private:
    static VcGePoint3d place(const VcDbMline::Vertex& v, std::size_t element)
    {
        const auto& lengths = v.elements[element].lengths;
        return v.point + v.miter * (lengths.empty() ? 0.0 : lengths[0]);
    }

    // The first length is along the miter; those behind it are where the line starts, breaks off, starts again.
    void addElement(const VcDbMline::Vertex& from, const VcDbMline::Vertex& to, std::size_t element)
    {
        if (element >= to.elements.size())
            return;
        const VcGePoint3d start = place(from, element), end = place(to, element);
        const double whole = (end - start).length();
        const auto& lengths = from.elements[element].lengths;
        if (lengths.size() <= 2)
            return addLine(start + from.direction * (lengths.size() == 2 ? lengths[1] : 0.0), end, element);
        for (std::size_t i = 1; i < lengths.size(); i += 2) {
            const double first = lengths[i], last = i + 1 < lengths.size() ? lengths[i + 1] : whole;
            addLine(start + from.direction * first, start + from.direction * std::min(last, whole), element);
        }
    }

    void addAcross(const VcDbMline::Vertex& v)
    {
        if (const auto ends = outermost(v))
            addLine(place(v, ends->first), place(v, ends->second), ends->first);
    }

    std::optional<std::pair<std::size_t, std::size_t>> outermost(const VcDbMline::Vertex& v) const
    {
        if (v.elements.size() < 2)
            return std::nullopt;
        const auto order = byOffset(v);
        return std::pair{order.front(), order.back()};
    }

    std::vector<std::size_t> byOffset(const VcDbMline::Vertex& v) const
    {
        std::vector<std::size_t> order(v.elements.size());
        for (std::size_t i = 0; i < order.size(); ++i)
            order[i] = i;
        const auto offset = [&](std::size_t e) {
            return v.elements[e].lengths.empty() ? 0.0 : v.elements[e].lengths[0];
        };
        std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return offset(a) < offset(b); });
        return order;
    }

    void addEnd(const VcDbMline::Vertex& v, const VcGeVector3d& outwards, bool square, bool round, bool inner)
    {
        if (square)
            addAcross(v);
        const auto order = byOffset(v);
        const std::size_t pairs = order.size() / 2;
        for (std::size_t i = 0; i < pairs; ++i)
            if (i == 0 ? round : inner)
                addHalfCircle(place(v, order[i]), place(v, order[order.size() - 1 - i]), outwards, order[i]);
    }

    void addHalfCircle(const VcGePoint3d& a, const VcGePoint3d& b, const VcGeVector3d& outwards, std::size_t element)
    {
        const VcGeVector3d normal = m_mline.normal();
        const double radius = (b - a).length() / 2;
        if (!(radius > 0))
            return;
        const bool anticlockwise = (b - a).crossProduct(normal).dotProduct(outwards) > 0;
        const VcGePoint3d center = a + (b - a) * 0.5;
        const VcGeVector3d toFirst = vk::geom::arbitraryFrame(normal).fromWorld((anticlockwise ? a : b) - center);
        const double start = std::atan2(toFirst.y, toFirst.x);
        add(std::make_unique<VcDbArc>(center, normal, radius, turnOf(start), turnOf(start + kPi)), element);
    }

    void addLine(const VcGePoint3d& from, const VcGePoint3d& to, std::size_t element)
    {
        if ((to - from).length() > 0)
            add(std::make_unique<VcDbLine>(from, to), element);
    }

    void add(std::unique_ptr<VcDbEntity> entity, std::size_t element)
    {
        entity->setPropertiesFrom(&m_mline);
        if (m_style && element < m_style->elements().size()) {
            const Style::Element& look = m_style->elements()[element];
            if (look.color.colorIndex() != 256)
                entity->setColor(look.color);
            if (!look.linetype.isNull())
                entity->setLinetype(look.linetype);
        }
        m_pieces.push_back(entity.release());
    }

    const VcDbMline& m_mline;
    const std::vector<VcDbMline::Vertex>& m_vertices;
    const Style* m_style;
    std::vector<VcDbEntity*>& m_pieces;
};

}

Vcad::ErrorStatus VcDbMline::explode(std::vector<VcDbEntity*>& pieces) const
{
    if (m_vertices.size() < 2)
        return Vcad::eCannotExplode;
    const DatabaseCore* db = DatabaseCore::of(m_style);
    MlinePieces(*this, db ? db->objectAs<VcDbMlineStyle>(m_style) : nullptr, pieces).addAll();
    return Vcad::eOk;
}
