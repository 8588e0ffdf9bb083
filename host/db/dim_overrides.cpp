// Dimension variables that an entity sets over its style: in its extended data as
// 1001 ACAD, 1000 DSTYLE, 1002 {, pairs of 1070 code and value, 1002 }.
#include "host/db/dim_overrides.h"

#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/ent_util.h"
#include "host/db/extras.h"
#include "host/db/rec_dim_variables.h"
#include "sdk/vcdb_records.h"

namespace {

bool isText(const Tag& tag, int code, std::string_view text)
{
    return tag.code == code && tag.form == Tag::Form::Utf8 && equalNoCase(tag.view(), text);
}

struct Override {
    int code;
    Tag value;
};

// The extended data cut in three: what stands before the list, the list, what stands behind. The tags belong to the list
// that was cut.
struct Cut {
    std::vector<Tag> before, after;
    std::vector<Override> overrides;
    bool hasApplication = false, hasList = false;
};

class Cutter {
public:
    Cut cut;

    void add(const Tag& tag)
    {
        switch (m_state) {
        case State::Outside:
            outside(tag);
            return;
        case State::AtList:
            cut.before.push_back(tag);
            m_state = isText(tag, 1002, "{") ? State::InList : State::Outside;
            cut.hasList = m_state == State::InList;
            return;
        case State::InList:
            inList(tag);
            return;
        case State::Behind:
            cut.after.push_back(tag);
            return;
        }
    }

private:
    enum class State { Outside, AtList, InList, Behind };

    void outside(const Tag& tag)
    {
        if (tag.code == 1001) {
            if (m_inApplication) {  // it ends without a list
                m_state = State::Behind;
                cut.after.push_back(tag);
                return;
            }
            m_inApplication = isText(tag, 1001, "ACAD");
            cut.hasApplication |= m_inApplication;
        }
        cut.before.push_back(tag);
        if (m_inApplication && isText(tag, 1000, "DSTYLE"))
            m_state = State::AtList;
    }

    void inList(const Tag& tag)
    {
        if (tag.code == 1002 || tag.code == 1001) {
            m_state = State::Behind;
            cut.after.push_back(tag);
        } else if (m_code) {
            cut.overrides.push_back({*m_code, tag});
            m_code.reset();
        } else if (tag.code == 1070) {
            m_code = int(tag.integer);
        }
    }

    State m_state = State::Outside;
    bool m_inApplication = false;
    std::optional<int> m_code;
};

Cut cutAt(const TagList& xdata)
{
    Cutter cutter;
    for (const Tag& tag : xdata)
        cutter.add(tag);
    return std::move(cutter.cut);
}

Cut cutOf(const VcDbObject& object)
{
    const ObjectExtras* extras = object.extras();
    return extras ? cutAt(extras->xdata) : Cut();
}

std::optional<Tag> find(const Cut& cut, int code)
{
    for (const Override& o : cut.overrides)
        if (o.code == code)
            return o.value;
    return std::nullopt;
}

// The list goes when its last variable does, and with it an application that has nothing else.
TagList withoutList(Cut cut)
{
    TagList all;
    if (cut.hasList) {
        cut.before.resize(cut.before.size() - 2);  // DSTYLE and its brace
        if (!cut.after.empty() && cut.after.front().code == 1002)
            cut.after.erase(cut.after.begin());
    }
    const bool applicationEnds = cut.after.empty() || cut.after.front().code == 1001;
    if (applicationEnds && !cut.before.empty() && cut.before.back().code == 1001)
        cut.before.pop_back();
    for (const std::vector<Tag>* part : {&cut.before, &cut.after})
        for (const Tag& tag : *part)
            all.add(tag);
    all.shrink();
    return all;
}

TagList joined(const Cut& cut)
{
    if (cut.overrides.empty())
        return withoutList(cut);
    TagList all;
    for (const Tag& tag : cut.before)
        all.add(tag);
    if (!cut.hasApplication)
        all.addText(1001, "ACAD");
    if (!cut.hasList) {
        all.addText(1000, "DSTYLE");
        all.addText(1002, "{");
    }
    for (const Override& o : cut.overrides) {
        all.addInteger(1070, o.code);
        all.add(o.value);
    }
    if (!cut.hasList)
        all.addText(1002, "}");
    for (const Tag& tag : cut.after)
        all.add(tag);
    all.shrink();
    return all;
}

void markStale(VcDbObject& object)
{
    if (auto* dimension = VcDbDimension::cast(&object))
        dimension->markPictureStale();
    else if (auto* leader = VcDbLeader::cast(&object))
        leader->markPictureStale();
}

Vcad::ErrorStatus store(VcDbObject& object, int code, const Tag& value)
{
    if (!findDimVariable(code))
        return Vcad::eInvalidInput;
    object.assertWriteEnabled();
    Cut cut = cutOf(object);
    bool found = false;
    for (Override& o : cut.overrides) {
        if (o.code != code)
            continue;
        o.value = value;
        found = true;
    }
    if (!found)
        cut.overrides.push_back({code, value});
    TagList all = joined(cut);
    object.makeExtras().xdata = std::move(all);
    markStale(object);
    return Vcad::eOk;
}

std::optional<double> numberOf(const Tag& tag)
{
    if (tag.form == Tag::Form::Real)
        return tag.real;
    if (tag.form == Tag::Form::Integer && !tag.isHandle)
        return double(tag.integer);
    return std::nullopt;
}

VcDbObjectId idOf(const VcDbObject& object, const Tag& tag)
{
    const DatabaseCore* db = DatabaseCore::of(object.objectId());
    const bool isHandle = tag.form == Tag::Form::Integer && tag.isHandle;
    return db && isHandle ? db->findHandle(std::uint64_t(tag.integer)) : VcDbObjectId();
}

}

bool VcDbDimOverrides::has(int code) const { return find(cutOf(m_entity), code).has_value(); }

std::optional<double> VcDbDimOverrides::number(int code) const
{
    const auto tag = find(cutOf(m_entity), code);
    return tag ? numberOf(*tag) : std::nullopt;
}

std::optional<std::string> VcDbDimOverrides::text(int code) const
{
    const auto tag = find(cutOf(m_entity), code);
    return tag && tag->form == Tag::Form::Utf8 ? std::optional<std::string>(tag->view()) : std::nullopt;
}

VcDbObjectId VcDbDimOverrides::reference(int code) const
{
    const auto tag = find(cutOf(m_entity), code);
    return tag ? idOf(m_entity, *tag) : VcDbObjectId();
}

Vcad::ErrorStatus VcDbDimOverrides::setReal(int code, double value)
{
    return isFinite(value) ? store(m_entity, code, Tag::ofReal(1040, value)) : Vcad::eOutOfRange;
}

Vcad::ErrorStatus VcDbDimOverrides::setInteger(int code, std::int16_t value)
{
    return store(m_entity, code, Tag::ofInteger(1070, value));
}

Vcad::ErrorStatus VcDbDimOverrides::setText(int code, const std::string& utf8)
{
    return store(m_entity, code, Tag::ofChars(1000, Tag::Form::Utf8, utf8));
}

Vcad::ErrorStatus VcDbDimOverrides::setReference(int code, VcDbObjectId id)
{
    Tag tag = Tag::ofInteger(1005, std::int64_t(id.handle().value()));
    tag.isHandle = true;
    return store(m_entity, code, tag);
}

Vcad::ErrorStatus VcDbDimOverrides::remove(int code)
{
    Cut cut = cutOf(m_entity);
    if (!find(cut, code))
        return Vcad::eKeyNotFound;
    m_entity.assertWriteEnabled();
    std::erase_if(cut.overrides, [&](const Override& o) { return o.code == code; });
    TagList all = joined(cut);
    m_entity.makeExtras().xdata = std::move(all);
    markStale(m_entity);
    return Vcad::eOk;
}

static void apply(const VcDbObject& object, VcDbDimVars& vars, const Override& o)
{
    const DimVariable* variable = findDimVariable(o.code);
    if (!variable)
        return;
    if (variable->isReference()) {
        if (const auto* member = std::get_if<VcDbObjectId VcDbDimVars::*>(&variable->member))
            vars.** member = idOf(object, o.value);
    } else if (const auto* text = std::get_if<std::string VcDbDimVars::*>(&variable->member)) {
        if (o.value.form == Tag::Form::Utf8)
            vars.** text = o.value.view();
    } else if (const auto number = numberOf(o.value)) {
        setDimNumber(vars, *variable, *number);
    }
}

VcDbDimVars VcDbDimOverrides::over(VcDbObjectId style) const { return dimVarsOf(m_entity, style); }

// What dimensions share

VcDbDimVars dimVarsOf(const VcDbObject& object, VcDbObjectId style)
{
    const DatabaseCore* db = DatabaseCore::of(style);
    const auto* record = db ? db->objectAs<VcDbDimStyleTableRecord>(style) : nullptr;
    VcDbDimVars vars = record ? record->dimVars() : VcDbDimVars();
    for (const Override& o : cutOf(object).overrides)
        apply(object, vars, o);
    return vars;
}

void dimStyleField(FieldVisitor& v, VcDbObjectId& style)
{
    if (v.isWriting() && !style.isNull())
        v.name(3, NameTable::DimStyle, style);
    else
        v.optionalName(3, NameTable::DimStyle, style, "Standard");
}

VcDbObjectId dimStyleOf(const VcDbObject& object, VcDbObjectId style)
{
    const DatabaseCore* db = DatabaseCore::of(object.objectId());
    return style.isNull() && db ? db->findRecord(NameTable::DimStyle, "Standard") : style;
}

Vcad::ErrorStatus setDimStyleOf(VcDbObject& object, VcDbObjectId& member, VcDbObjectId style)
{
    return setMember(object, member, style, mayReferTo(object, style, VcDbDimStyleTableRecord::desc()));
}

double xdataNumber(const VcDbObject& object, std::string_view application, int code)
{
    const ObjectExtras* extras = object.extras();
    if (!extras)
        return 0;
    bool inside = false;
    std::optional<std::int64_t> pair;
    for (const Tag& tag : extras->xdata) {
        if (tag.code == 1001) {
            inside = isText(tag, 1001, application);
            pair.reset();
        } else if (inside && pair) {
            if (*pair == code)
                return numberOf(tag).value_or(0.0);
            pair.reset();
        } else if (inside && tag.code == 1070) {
            pair = tag.integer;
        }
    }
    return 0;
}
