// Leaders with several lines. Their groups are kept as they came; what is seen stands in a context that holds the text or
// the block, and the lines of each leader.
#include "host/db/database.h"
#include "host/db/extras.h"
#include "host/db/kept_object.h"
#include "host/db/text_geometry.h"
#include "host/render/build_parts.h"
#include "host/render/looks.h"
#include "host/text/mtext_layout.h"
#include "sdk/vcdb_text.h"

#include <cmath>

namespace vk::render {

namespace {

struct Leader {
    VcGePoint3d landing;
    VcGeVector3d dogleg;
    double doglegLength = 0;
    bool hasLanding = false, hasDogleg = false;
    std::vector<std::vector<VcGePoint3d>> lines;
};

struct MultiLeader {
    std::string text;
    VcGePoint3d textAt, blockAt;
    VcGeVector3d normal{0, 0, 1}, direction{1, 0, 0}, blockNormal{0, 0, 1}, blockScale{1, 1, 1};
    double textHeight = 1, arrowSize = 0, rotation = 0, width = 0, spacing = 1, blockRotation = 0;
    int alignment = 1, lineKind = 1;
    struct Attribute {
        VcDbObjectId definition;
        std::string text;
    };
    std::vector<Attribute> attributes;  // of the block
    bool hasText = false, hasBlock = false, exactSpacing = false;
    std::int64_t textColour = 0, lineColour = 0;
    VcDbObjectId textStyle, block, arrow;
    std::vector<Leader> leaders;
};

double& axis(VcGePoint3d& p, int code) { return code < 20 ? p.x : code < 30 ? p.y : p.z; }
double& axis(VcGeVector3d& v, int code) { return code < 20 ? v.x : code < 30 ? v.y : v.z; }

// The same codes mean other things in each of the nested parts.
class Reader {
public:
    Reader(const DatabaseCore& db, const ObjectExtras& extras) : m_db(db)
    {
        for (const UnclaimedGroups& groups : extras.unclaimed)
            for (const Tag& tag : groups.tags)
                take(tag);
    }
    MultiLeader leader;

private:
    enum class Part { Object, Context, Leader, Line };

    void take(const Tag& tag)
    {
        if (tag.form == Tag::Form::Utf8 && enters(tag))
            return;
        if (m_part == Part::Object)
            takeOfObject(tag);
        else if (m_part == Part::Context)
            takeOfContext(tag);
        else if (m_part == Part::Leader)
            takeOfLeader(tag);
        else
            takeOfLine(tag);
    }

    bool enters(const Tag& tag)
    {
        const std::string_view text = tag.view();
        if (tag.code == 300 && text == "CONTEXT_DATA{")
            m_part = Part::Context;
        else if (tag.code == 302 && text == "LEADER{") {
            leader.leaders.emplace_back();
            m_part = Part::Leader;
        } else if (tag.code == 304 && text == "LEADER_LINE{" && m_part == Part::Leader) {
            leader.leaders.back().lines.emplace_back();
            m_part = Part::Line;
        } else if (tag.code == 305 && m_part == Part::Line)
            m_part = Part::Leader;
        else if (tag.code == 303 && m_part == Part::Leader)
            m_part = Part::Context;
        else if (tag.code == 301 && m_part == Part::Context)
            m_part = Part::Object;
        else
            return false;
        return true;
    }

    VcDbObjectId idOf(const Tag& tag) const { return m_db.findHandle(std::uint64_t(tag.integer)); }

    void takeOfObject(const Tag& tag)
    {
        if (tag.form == Tag::Form::Utf8 && tag.code == 302 && !leader.attributes.empty())
            leader.attributes.back().text = tag.view();
        if (tag.form != Tag::Form::Integer)
            return;
        if (tag.code == 330 && m_db.liveAs<VcDbAttributeDefinition>(idOf(tag)))
            leader.attributes.push_back({idOf(tag), {}});
        if (tag.code == 170)
            leader.lineKind = int(tag.integer);
        else if (tag.code == 91)
            leader.lineColour = tag.integer;
        else if (tag.code == 342)
            leader.arrow = idOf(tag);
    }

    void takeOfContext(const Tag& tag)
    {
        if (tag.form == Tag::Form::Utf8 && tag.code == 304)
            leader.text = tag.view();
        else if (tag.form == Tag::Form::Real)
            takeReal(tag.code, tag.real);
        else if (tag.form == Tag::Form::Integer)
            takeInteger(tag);
    }

    void takeReal(int code, double value)
    {
        // clang-format off
        switch (code) {
        case 41: leader.textHeight = value; return;
        case 140: leader.arrowSize = value; return;
        case 42: leader.rotation = value; return;
        case 43: leader.width = value; return;
        case 45: leader.spacing = value; return;
        case 46: leader.blockRotation = value; return;
        case 11: case 21: case 31: axis(leader.normal, code) = value; return;
        case 12: case 22: case 32: axis(leader.textAt, code) = value; return;
        case 13: case 23: case 33: axis(leader.direction, code) = value; return;
        case 14: case 24: case 34: axis(leader.blockNormal, code) = value; return;
        case 15: case 25: case 35: axis(leader.blockAt, code) = value; return;
        case 16: case 26: case 36: axis(leader.blockScale, code) = value; return;
        }
        // clang-format on
    }

    void takeInteger(const Tag& tag)
    {
        // clang-format off
        switch (tag.code) {
        case 290: leader.hasText = tag.integer != 0; return;
        case 296: leader.hasBlock = tag.integer != 0; return;
        case 340: leader.textStyle = idOf(tag); return;
        case 341: leader.block = idOf(tag); return;
        case 170: leader.exactSpacing = tag.integer == 2; return;
        case 171: leader.alignment = int(tag.integer); return;
        case 90: leader.textColour = tag.integer; return;
        }
        // clang-format on
    }

    void takeOfLeader(const Tag& tag)
    {
        Leader& l = leader.leaders.back();
        const bool real = tag.form == Tag::Form::Real, integer = tag.form == Tag::Form::Integer;
        if (integer && tag.code == 290)
            l.hasLanding = tag.integer != 0;
        else if (integer && tag.code == 291)
            l.hasDogleg = tag.integer != 0;
        else if (real && tag.code == 40)
            l.doglegLength = tag.real;
        else if (real && tag.code % 10 == 0 && tag.code >= 10 && tag.code <= 30)
            axis(l.landing, tag.code) = tag.real;
        else if (real && tag.code % 10 == 1 && tag.code >= 11 && tag.code <= 31)
            axis(l.dogleg, tag.code) = tag.real;
    }

    void takeOfLine(const Tag& tag)
    {
        std::vector<VcGePoint3d>& line = leader.leaders.back().lines.back();
        if (tag.form != Tag::Form::Real || (tag.code != 10 && tag.code != 20 && tag.code != 30))
            return;
        if (tag.code == 10)
            line.emplace_back();
        if (!line.empty())
            axis(line.back(), tag.code) = tag.real;
    }

    const DatabaseCore& m_db;
    Part m_part = Part::Object;
};

}

void setPackedColour(ListBuilder& b, std::int64_t packed)
{
    const auto colour = colourOfPacked(std::uint32_t(packed));
    b.setColour(!colour || colour->isByBlock() ? b.props().color : *colour);
}

namespace {

void addLine(ListBuilder& b, const MultiLeader& m, const Leader& leader, std::vector<VcGePoint3d> points)
{
    if (leader.hasLanding)
        points.push_back(leader.landing);
    if (points.size() < 2)
        return;
    const VcGeVector3d first = points[1] - points[0];
    if (m.arrowSize > 0 && first.length() > m.arrowSize) {
        addArrow(b, m.arrow, points[0], -first, m.normal, m.arrowSize);
        if (m.arrow.isNull())
            points[0] += first.normal() * m.arrowSize;
    }
    if (leader.hasDogleg && m.lineKind != 2)
        points.push_back(leader.landing + leader.dogleg.normal() * leader.doglegLength);
    const std::uint32_t figure = b.figureCount();
    b.beginFigure();
    addThroughPoints(b, points, m.lineKind == 2);
    b.endFigure(false);
    b.stroke(figure, Item::RunsOn);
}

void addText(ListBuilder& b, const MultiLeader& m)
{
    vktext::MTextSpec spec;
    spec.contents = m.text;
    spec.style = textStyleSpec(m.textStyle, &b.db());
    spec.height = m.textHeight;
    spec.width = m.width;
    spec.attachment = m.alignment >= 1 && m.alignment <= 3 ? m.alignment : 1;
    spec.spacingFactor = m.spacing;
    spec.exactSpacing = m.exactSpacing;
    const VcGeVector3d z = m.normal.normal(), x0 = m.direction.normal(), y0 = z.crossProduct(x0);
    addMTextLayout(b, vktext::layoutMText(spec), m.textAt, x0, y0);
}

void addBlock(ListBuilder& b, const MultiLeader& m)
{
    BlockUse use;
    use.block = m.block;
    use.matrix = VcGeMatrix3d::translation(m.blockAt.asVector()) * VcGeMatrix3d::planeToWorld(m.blockNormal) *
                 VcGeMatrix3d::rotation(m.blockRotation, VcGeVector3d::zAxis()) *
                 VcGeMatrix3d::scaling(VcGeScale3d(m.blockScale.x, m.blockScale.y, m.blockScale.z));
    for (const MultiLeader::Attribute& attribute : m.attributes) {
        VcDbAttributeDefinition placed = *b.db().liveAs<VcDbAttributeDefinition>(attribute.definition);
        placed.transformBy(use.matrix);
        addTextSaying(b, placed, attribute.text);
    }
    b.use(std::move(use));
}

}

void buildMultiLeader(const VcDbEntity& e, ListBuilder& b)
{
    if (!e.extras())
        return;
    const MultiLeader m = Reader(b.db(), *e.extras()).leader;
    setPackedColour(b, m.lineColour);
    for (const Leader& leader : m.leaders)
        for (const auto& line : leader.lines)
            if (m.lineKind != 0)
                addLine(b, m, leader, line);
    setPackedColour(b, m.textColour);
    if (m.hasText)
        addText(b, m);
    if (m.hasBlock)
        addBlock(b, m);
}

}  // namespace vk::render
