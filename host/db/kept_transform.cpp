// Moving entities that are kept as groups. A table says which of the groups of a class are points, directions and lengths.
#include "host/db/database.h"
#include "host/db/ent_util.h"
#include "host/db/extras.h"
#include "host/db/kept_object.h"
#include "host/db/multileader.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_text.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace {

// Braces of texts part the groups of a multileader; the same code means other things within them.
enum class Part { Whole, Context, Leader, Line };
enum class Meaning { Other, Point, Direction, Length, Lengths, Turn, TurnDegrees, Matrix };

struct Rule {
    Part part;
    std::int16_t code;
    Meaning meaning;
};

constexpr Rule kMultileader[] = {
    {Part::Context, 10, Meaning::Point},      {Part::Context, 12, Meaning::Point},
    {Part::Context, 15, Meaning::Point},      {Part::Context, 110, Meaning::Point},
    {Part::Context, 11, Meaning::Direction},  {Part::Context, 13, Meaning::Direction},
    {Part::Context, 14, Meaning::Direction},  {Part::Context, 111, Meaning::Direction},
    {Part::Context, 112, Meaning::Direction}, {Part::Context, 40, Meaning::Length},
    {Part::Context, 41, Meaning::Length},     {Part::Context, 43, Meaning::Length},
    {Part::Context, 44, Meaning::Length},     {Part::Context, 140, Meaning::Length},
    {Part::Context, 145, Meaning::Length},    {Part::Context, 16, Meaning::Lengths},
    {Part::Context, 42, Meaning::Turn},       {Part::Context, 46, Meaning::Turn},
    {Part::Context, 47, Meaning::Matrix},     {Part::Leader, 10, Meaning::Point},
    {Part::Leader, 12, Meaning::Point},       {Part::Leader, 13, Meaning::Point},
    {Part::Leader, 11, Meaning::Direction},   {Part::Leader, 40, Meaning::Length},
    {Part::Line, 10, Meaning::Point},         {Part::Line, 11, Meaning::Point},
    {Part::Line, 12, Meaning::Point},         {Part::Whole, 45, Meaning::Length},
};

constexpr Rule kUnderlay[] = {
    {Part::Whole, 10, Meaning::Point},  {Part::Whole, 41, Meaning::Length},      {Part::Whole, 42, Meaning::Length},
    {Part::Whole, 43, Meaning::Length}, {Part::Whole, 50, Meaning::TurnDegrees},
};

struct Class {
    const char* dxfName;
    const char* subclass;
    std::span<const Rule> rules;
    bool staysLevel;    // knows no other plane
    bool hasImages;     // in a mirror
};

constexpr Class kClasses[] = {
    {"MULTILEADER", "AcDbMLeader", kMultileader, false, true},
    {"MLEADER", "AcDbMLeader", kMultileader, false, true},
    {"PDFUNDERLAY", "AcDbUnderlayReference", kUnderlay, true, false},
    {"DWFUNDERLAY", "AcDbUnderlayReference", kUnderlay, true, false},
    {"DGNUNDERLAY", "AcDbUnderlayReference", kUnderlay, true, false},
};

const Class* classOf(const VcDbKeptEntity& entity)
{
    const auto found = std::find_if(std::begin(kClasses), std::end(kClasses),
                                    [&](const Class& c) { return std::strcmp(c.dxfName, entity.keptDxfName()) == 0; });
    return found == std::end(kClasses) ? nullptr : found;
}

// Follows the parts as the groups go by.
class Reader {
public:
    explicit Reader(const Class& kind) : m_class(kind) {}
    Meaning meaning(const Tag& tag)
    {
        const Part part = m_part;
        if (tag.form == Tag::Form::Utf8)
            step(tag.code, tag.view());
        const auto rule = std::find_if(m_class.rules.begin(), m_class.rules.end(),
                                       [&](const Rule& r) { return r.part == part && r.code == tag.code; });
        return rule == m_class.rules.end() ? Meaning::Other : rule->meaning;
    }

    Part part() const { return m_part; }

private:
    void step(int code, std::string_view text)
    {
        if (code == 300 && text == "CONTEXT_DATA{")
            m_part = Part::Context;
        else if (code == 302 && text == "LEADER{")
            m_part = Part::Leader;
        else if (code == 304 && text == "LEADER_LINE{" && m_part == Part::Leader)
            m_part = Part::Line;
        else if (code == 305 && m_part == Part::Line)
            m_part = Part::Leader;
        else if (code == 303 && m_part == Part::Leader)
            m_part = Part::Context;
        else if (code == 301 && m_part == Part::Context)
            m_part = Part::Whole;
    }

    const Class& m_class;
    Part m_part = Part::Whole;
};

bool isThreefold(Meaning meaning)
{
    return meaning == Meaning::Point || meaning == Meaning::Direction || meaning == Meaning::Lengths;
}

// Tags one by one, those of points and the like three at a time.
template <class Single, class Triple>
void forEachGroup(const TagList& tags, const Class& kind, Single&& single, Triple&& triple)
{
    Reader reader(kind);
    for (auto at = tags.begin(); at != tags.end(); ++at) {
        const Meaning meaning = reader.meaning(*at);
        const int code = at->code;
        double xyz[3] = {at->form == Tag::Form::Real ? at->real : 0, 0, 0};
        if (!isThreefold(meaning) || at->form != Tag::Form::Real) {
            single(*at, meaning);
            continue;
        }
        int read = 1;
        for (auto next = at;
             read < 3 && ++next != tags.end() && next->code == code + 10 * read && next->form == Tag::Form::Real;
             ++read) {
            xyz[read] = next->real;
            at = next;
        }
        triple(code, read, VcGePoint3d(xyz[0], xyz[1], xyz[2]), meaning);
    }
}

class Mover {
public:
    Mover(const Class& kind, const VcGeMatrix3d& m, const PlaneMove& move) : m_class(kind), m_matrix(m), m_move(move) {}

    TagList moved(const TagList& tags)
    {
        TagList result;
        blockMatrix(tags);
        forEachGroup(
            tags, m_class, [&](const Tag& tag, Meaning meaning) { addSingle(result, tag, meaning); },
            [&](int code, int count, const VcGePoint3d& p, Meaning meaning) {
                const VcGePoint3d q = image(p, meaning);
                const double xyz[] = {q.x, q.y, q.z};
                for (int i = 0; i < count; ++i)
                    result.addReal(code + 10 * i, xyz[i]);
            });
        return result;
    }

private:
    VcGePoint3d image(const VcGePoint3d& p, Meaning meaning) const
    {
        if (meaning == Meaning::Point)
            return m_matrix * p;
        if (meaning == Meaning::Lengths)
            return VcGePoint3d() + p.asVector() * m_move.scale;
        const VcGeVector3d direction = m_matrix * p.asVector();
        return VcGePoint3d() + (direction.length() > 0 ? direction.normal() : p.asVector());
    }

    // Sixteen numbers, row by row, that place a block.
    void blockMatrix(const TagList& tags)
    {
        VcGeMatrix3d block;
        int count = 0;
        forEachGroup(
            tags, m_class,
            [&](const Tag& tag, Meaning meaning) {
                if (meaning == Meaning::Matrix && tag.form == Tag::Form::Real && count < 16) {
                    block.entry[count / 4][count % 4] = tag.real;
                    ++count;
                }
            },
            [](int, int, const VcGePoint3d&, Meaning) {});
        m_block = m_matrix * block;
    }

    void addSingle(TagList& result, const Tag& tag, Meaning meaning)
    {
        if (tag.form != Tag::Form::Real || meaning == Meaning::Other)
            return result.add(tag);
        double value = tag.real;
        if (meaning == Meaning::Length)
            value *= m_move.scale;
        else if (meaning == Meaning::Turn)
            value = turnOf(value + m_move.angle(0));
        else if (meaning == Meaning::TurnDegrees)
            value += m_move.angle(0) * 180 / M_PI;
        else if (meaning == Meaning::Matrix && m_entries < 16) {
            value = m_block.entry[m_entries / 4][m_entries % 4];
            ++m_entries;
        }
        result.addReal(tag.code, value);
    }

    const Class& m_class;
    const VcGeMatrix3d& m_matrix;
    const PlaneMove& m_move;
    VcGeMatrix3d m_block;
    int m_entries = 0;
};

// Where the text and the block of a multileader come to stand in a mirror.
struct Content {
    std::unique_ptr<VcDbMText> text;
    std::unique_ptr<VcDbBlockReference> block;
};

std::optional<Content> contentIn(const VcDbKeptEntity& entity, const VcGeMatrix3d& mirror)
{
    const DatabaseCore* db = DatabaseCore::of(entity.props().layer);
    if (!db)
        return std::nullopt;
    const vk::db::MultiLeader leader = vk::db::readMultiLeader(entity, *db);
    Content content{textOf(leader, *db), blockOf(leader, *db)};
    if ((content.text && content.text->transformBy(mirror)) || (content.block && content.block->transformBy(mirror)))
        return std::nullopt;
    return content;
}

// Texts of multileaders hang from their upper edge.
VcGePoint3d upperEdge(const VcDbMText& text)
{
    const int row = (text.attachment() - 1) / 3;
    const VcGeVector3d up = text.normal().crossProduct(text.direction()).normal();
    return text.location() + up * (text.actualHeight() * row / 2);
}

class ContentWriter {
public:
    ContentWriter(const Content& content, const Class& kind) : m_content(content), m_reader(kind) {}

    TagList written(const TagList& tags)
    {
        TagList result;
        for (const Tag& tag : tags) {
            const bool isContext = m_reader.part() == Part::Context;
            m_reader.meaning(tag);
            if (isContext && m_reader.part() == Part::Whole)
                addAlignment(result);
            const auto value = isContext && tag.form == Tag::Form::Real ? realOf(tag.code) : std::nullopt;
            if (value)
                result.addReal(tag.code, *value);
            else if (!(isContext && m_content.text && tag.code == kAlignment))
                result.add(tag);
        }
        return result;
    }

private:
    static constexpr int kAlignment = 171;

    // Left, middle or right.
    void addAlignment(TagList& result) const
    {
        if (m_content.text)
            result.addInteger(kAlignment, (m_content.text->attachment() - 1) % 3 + 1);
    }

    static std::optional<double> axisOf(int code, int first, double x, double y, double z)
    {
        const int axis = (code - first) / 10;
        return axis == 0 ? x : axis == 1 ? y : z;
    }

    std::optional<double> realOf(int code) const
    {
        const auto at = [code](int first, const auto& v) { return axisOf(code, first, v.x, v.y, v.z); };
        const bool isThreefold = code > 10 && code < 40;
        if (const VcDbMText* text = m_content.text.get()) {
            if (isThreefold && code % 10 == 1)
                return at(11, text->normal());
            if (isThreefold && code % 10 == 2)
                return at(12, upperEdge(*text));
            if (isThreefold && code % 10 == 3)
                return at(13, text->direction());
            if (code == 42)
                return text->rotation();
        }
        if (const VcDbBlockReference* block = m_content.block.get()) {
            const VcGeScale3d scale = block->scaleFactors();
            if (isThreefold && code % 10 == 4)
                return at(14, block->normal());
            if (isThreefold && code % 10 == 5)
                return at(15, block->position());
            if (isThreefold && code % 10 == 6)
                return axisOf(code, 16, scale.sx, scale.sy, scale.sz);
            if (code == 46)
                return block->rotation();
        }
        return std::nullopt;
    }

    const Content& m_content;
    Reader m_reader;
};

UnclaimedGroups* groupsOf(const VcDbKeptEntity& entity, const Class& kind)
{
    auto* extras = const_cast<VcDbKeptEntity&>(entity).extras();
    if (!extras)
        return nullptr;
    const auto marks = [&](const Tag& tag) {
        return tag.code == 100 && tag.form == Tag::Form::Utf8 && tag.view() == kind.subclass;
    };
    for (UnclaimedGroups& groups : extras->unclaimed)
        for (const Tag& tag : groups.tags)
            if (groups.subclass == kind.subclass || marks(tag))
                return &groups;
    return nullptr;
}

}

Vcad::ErrorStatus VcDbKeptEntity::transformBy(const VcGeMatrix3d& m)
{
    const Class* kind = classOf(*this);
    if (!kind || !groupsOf(*this, *kind))
        return Vcad::eNotApplicable;
    const auto move = planeMove(m, VcGeVector3d::zAxis());
    if (!move)
        return Vcad::eInvalidInput;
    if (kind->staysLevel && move->normal != VcGeVector3d::zAxis())
        return Vcad::eNotApplicable;
    if (!move->even || !move->upright || (move->mirrored && !kind->hasImages))
        return Vcad::eCannotScaleNonUniformly;
    std::optional<Content> image;
    if (move->mirrored && !(image = contentIn(*this, m)))
        return Vcad::eNotApplicable;
    assertWriteEnabled();
    UnclaimedGroups& groups = *groupsOf(*this, *kind);
    groups.tags = Mover(*kind, m, *move).moved(groups.tags);
    if (image)
        groups.tags = ContentWriter(*image, *kind).written(groups.tags);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbKeptEntity::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    if (!vk::db::isMultiLeader(*this))
        return Vcad::eNotApplicable;
    for (const auto& piece : vk::db::multiLeaderPieces(*this))
        if (VcDbExtents one; piece->getGeomExtents(one) == Vcad::eOk)
            extents.addExt(one);
    return extentsStatus(extents);
}

Vcad::ErrorStatus VcDbKeptEntity::explode(std::vector<VcDbEntity*>& pieces) const
{
    if (!vk::db::isMultiLeader(*this))
        return Vcad::eCannotExplode;
    auto made = vk::db::multiLeaderPieces(*this);
    for (auto& piece : made)
        pieces.push_back(piece.release());
    return made.empty() ? Vcad::eNotApplicable : Vcad::eOk;
}
