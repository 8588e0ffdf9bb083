#include "host/geom/model_shape.h"

#include "host/geom/curve_edit.h"
#include "host/geom/model_values.h"

#include <algorithm>
#include <unordered_map>

namespace vk::geom {

namespace {

// Records are found through their types rather than by the places of pointers, which moved from version to version.
class ShapeReader {
public:
    explicit ShapeReader(const ModelRecords& records) : m_records(records) {}

    ModelShape read()
    {
        for (std::size_t i = 0; i < m_records.size(); ++i)
            if (m_records[i].type == "face")
                addFace(m_records[i]);
        for (std::size_t i = 0; i < m_records.size(); ++i)
            if (isOf(m_records[i].type, "coedge"))
                addSide(m_records[i]);
        return std::move(m_shape);
    }

private:
    using Tokens = std::span<const ModelToken>;

    // A type derives from those behind its hyphens: a tedge-edge is an edge with a tolerance.
    static bool isOf(std::string_view type, std::string_view base)
    {
        return type.ends_with(base) && (type.size() == base.size() || type[type.size() - base.size() - 1] == '-');
    }

    // The place of the first pointer to a record of the type, from a place on.
    std::size_t find(Tokens tokens, std::string_view type, std::size_t from = 0) const
    {
        while (from < tokens.size() && !isPointerTo(tokens[from], type))
            ++from;
        return from;
    }
    bool isPointerTo(const ModelToken& token, std::string_view type) const
    {
        const ModelRecord* target = m_records.target(token);
        return target && isOf(target->type, type);
    }
    const ModelRecord* linked(const ModelRecord& record, std::string_view type) const
    {
        const Tokens tokens = m_records.tokens(record);
        const std::size_t at = find(tokens, type);
        return at < tokens.size() ? m_records.target(tokens[at]) : nullptr;
    }

    // Up through the owners to the body that places all that it has.
    VcGeMatrix3d placing(const ModelRecord* part)
    {
        static constexpr std::string_view kOwners[] = {"loop", "face", "wire", "subshell", "shell", "lump", "body"};
        for (const std::string_view owner : kOwners)
            if (const ModelRecord* up = linked(*part, owner); up && rank(up->type) > rank(part->type))
                part = up;
        if (part->type != "body")
            part = firstBody();
        const ModelRecord* transform = part ? linked(*part, "transform") : nullptr;
        return transform ? modelTransform(m_records, *transform).value_or(VcGeMatrix3d()) : VcGeMatrix3d();
    }
    static int rank(std::string_view type)
    {
        static constexpr std::string_view kRanks[] = {"loop", "face", "wire", "subshell", "shell", "lump", "body"};
        const auto at = std::find(std::begin(kRanks), std::end(kRanks), type);
        return at == std::end(kRanks) ? -1 : int(at - std::begin(kRanks));
    }
    const ModelRecord* firstBody()
    {
        for (std::size_t i = 0; i < m_records.size(); ++i)
            if (m_records[i].type == "body")
                return &m_records[i];
        return nullptr;
    }

    void addFace(const ModelRecord& record)
    {
        const Tokens tokens = m_records.tokens(record);
        const std::size_t at = find(tokens, "surface");
        ModelFace face;
        face.placed = placing(&record);
        if (at < tokens.size())
            face.surface = modelSurface(m_records, *m_records.target(tokens[at]));
        if (at + 1 < tokens.size() && isReversed(tokens[at + 1]))
            turnOver(face.surface);
        m_faces.emplace(&record, m_shape.faces.size());
        m_shape.faces.push_back(std::move(face));
    }

    static void turnOver(Surface& surface)
    {
        std::visit(
            [](auto& s) {
                if constexpr (requires { s.inward; })
                    s.inward = !s.inward;
            },
            surface);
    }

    void addSide(const ModelRecord& coedge)
    {
        const Tokens tokens = m_records.tokens(coedge);
        const std::size_t at = find(tokens, "edge");
        if (at >= tokens.size())
            return;
        const Edge& edge = addEdge(*m_records.target(tokens[at]), coedge);
        const ModelRecord* loop = linked(coedge, "loop");
        const ModelRecord* owner = loop ? linked(*loop, "face") : nullptr;
        const auto face = m_faces.find(owner);
        if (face == m_faces.end())
            return;
        if (!edge.isThere) {
            m_shape.faces[face->second].isWhole &= edge.isPoint;
            return;
        }
        const bool against = at + 1 < tokens.size() && isReversed(tokens[at + 1]);
        m_shape.faces[face->second].sides.push_back({edge.index, against != edge.runsBack});
    }

    struct Edge {
        bool isThere = false, runsBack = false;
        bool isPoint = false;  // the tip of a cone
        std::uint32_t index = 0;
    };

    const Edge& addEdge(const ModelRecord& record, const ModelRecord& coedge)
    {
        const auto [at, isNew] = m_edges.try_emplace(&record);
        if (!isNew)
            return at->second;
        const ModelRecord* carrier = linked(record, "curve");
        at->second.isPoint = !carrier;
        if (!carrier)
            return at->second;
        auto made = edgeCurve(m_records, *carrier, endsOf(record));
        if (const VcGeMatrix3d placed = placing(&coedge); made && placed != VcGeMatrix3d())
            made->curve = transformed(made->curve, placed);
        if (!made || !isValid(made->curve)) {
            ++m_shape.unread;
            return at->second;
        }
        at->second = {true, made->runsBack, false, std::uint32_t(m_shape.edges.size())};
        m_shape.edges.push_back(std::move(made->curve));
        return at->second;
    }

    EdgeEnds endsOf(const ModelRecord& edge) const
    {
        const Tokens tokens = m_records.tokens(edge);
        EdgeEnds ends;
        const std::size_t first = find(tokens, "vertex"), second = find(tokens, "vertex", first + 1);
        ends.start = vertexPoint(tokens, first);
        ends.end = vertexPoint(tokens, second);
        const auto isNumber = [&](std::size_t i) { return i < tokens.size() && tokens[i].kind == ModelToken::Number; };
        if (isNumber(first + 1) && isNumber(second + 1))
            ends.params = Interval{tokens[first + 1].value, tokens[second + 1].value};
        const std::size_t curve = find(tokens, "curve");
        ends.isReversed = curve + 1 < tokens.size() && isReversed(tokens[curve + 1]);
        return ends;
    }

    std::optional<Point3> vertexPoint(Tokens tokens, std::size_t at) const
    {
        const ModelRecord* point = at < tokens.size() ? linked(*m_records.target(tokens[at]), "point") : nullptr;
        const Tokens values = point ? ownTokens(m_records, *point) : Tokens();
        if (values.size() < 3)
            return std::nullopt;
        return Point3(values[0].value, values[1].value, values[2].value);
    }

    const ModelRecords& m_records;
    ModelShape m_shape;
    std::unordered_map<const ModelRecord*, std::size_t> m_faces;
    std::unordered_map<const ModelRecord*, Edge> m_edges;
};

}  // namespace

ModelShape readModelShape(const ModelRecords& records) { return ShapeReader(records).read(); }

}  // namespace vk::geom
