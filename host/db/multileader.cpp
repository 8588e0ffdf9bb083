#include "host/db/multileader.h"

#include "host/db/database.h"
#include "host/db/extras.h"
#include "host/db/kept_object.h"
#include "sdk/vcdb_text.h"

namespace vk::db {

namespace {

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
        else if (tag.code == 341)
            leader.linetype = idOf(tag);
        else if (tag.code == 171)
            leader.lineWeight = std::int16_t(tag.integer);
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
        case 43: leader.width = value; return;
        case 45: leader.spacing = value; return;
        case 46: leader.blockRotation = value; return;
        case 141: leader.fillScale = value; return;
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
        case 91: leader.fillColour = tag.integer; return;
        case 93: leader.blockColour = tag.integer; return;
        case 291: leader.fillsLikeWindow = tag.integer != 0; return;
        case 292: leader.isFilled = tag.integer != 0; return;
        }
        // clang-format on
    }

    void takeOfLeader(const Tag& tag)
    {
        LeaderOfMany& l = leader.leaders.back();
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

bool isMultiLeader(const VcDbKeptEntity& entity)
{
    const std::string_view name = entity.keptDxfName();
    return name == "MULTILEADER" || name == "MLEADER";
}

MultiLeader readMultiLeader(const VcDbEntity& entity, const DatabaseCore& db)
{
    const ObjectExtras* extras = entity.extras();
    return extras ? Reader(db, *extras).leader : MultiLeader();
}

}  // namespace vk::db
