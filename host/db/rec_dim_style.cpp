#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/extras.h"
#include "host/db/rec_arrow_blocks.h"
#include "host/db/rec_dim_variables.h"
#include "sdk/vcdb_records.h"

VCDB_DEFINE(VcDbDimStyleTableRecord, VcDbSymbolTableRecord, "DIMSTYLE")

void VcDbDimStyleTableRecord::setDimVars(const VcDbDimVars& vars)
{
    assertWriteEnabled();
    m_vars = vars;
    m_vars.dimunit = m_vars.dimfit = -1;
    m_namedArrows.reset();
    putExtendedData();
}

namespace {

using Kind = DimVariable::Kind;

// One variable of a style to or from a file or a chain. Files up to R14 have every group, later ones what is not as in
// imperial units.
class VariableField {
public:
    // standardStyle is what a null text style means.
    VariableField(FieldVisitor& v, VcDbDimVars& vars, VcDbObjectId standardStyle)
        : m_v(v), m_vars(vars), m_standardStyle(standardStyle), m_isOldFile(v.isFile() && !v.atLeast(DxfVersion::R2000))
    {
    }

    void operator()(const DimVariable& variable)
    {
        if (variable.isInExtendedData())
            return;
        if (variable.code == 270 || variable.code == 287)
            older(variable);
        else if (m_v.purpose() == FieldVisitor::Purpose::WriteFile && !variable.isIn(m_v.version()) &&
                 !hasOldName(variable))
            return;
        else if (const auto* real = std::get_if<double VcDbDimVars::*>(&variable.member))
            this->real(variable, m_vars.**real);
        else if (const auto* number = std::get_if<std::int16_t VcDbDimVars::*>(&variable.member))
            this->number(variable, m_vars.**number);
        else if (const auto* text = std::get_if<std::string VcDbDimVars::*>(&variable.member))
            this->text(variable, m_vars.**text);
        else
            reference(variable, m_vars.*std::get<VcDbObjectId VcDbDimVars::*>(variable.member));
    }

private:
    bool writesAll() const { return m_isOldFile && m_v.isWriting(); }
    bool hasOldName(const DimVariable& variable) const { return m_isOldFile && variable.oldCode != 0; }

    void real(const DimVariable& variable, double& value)
    {
        if (writesAll())
            m_v.real(variable.code, value);
        else if (variable.kind == Kind::Angle)
            m_v.optionalAngle(variable.code, value, variable.imperial);
        else
            m_v.optional(variable.code, value, variable.imperial);
    }

    void number(const DimVariable& variable, std::int16_t& value)
    {
        if (writesAll())
            m_v.number(variable.code, value);
        else
            m_v.optionalNumber(variable.code, value, std::int16_t(variable.imperial));
    }

    void text(const DimVariable& variable, std::string& value)
    {
        if (writesAll())
            m_v.text(variable.code, value);
        else
            m_v.optionalText(variable.code, value, "");
    }

    // A newer file that carries the older variable all the same gets it back.
    void older(const DimVariable& variable)
    {
        std::int16_t& kept = m_vars.*std::get<std::int16_t VcDbDimVars::*>(variable.member);
        std::int16_t worked = variable.code == 270 ? olderDimUnit(m_vars) : olderDimFit(m_vars);
        if (m_v.isReading() || (m_v.isFile() && !m_isOldFile))
            m_v.optionalNumber<std::int16_t>(variable.code, kept, -1);
        else if (m_v.isChain() || variable.isIn(m_v.version()))
            m_v.number(variable.code, worked);
    }

    void reference(const DimVariable& variable, VcDbObjectId& id)
    {
        if (m_isOldFile && variable.kind == Kind::Arrow)
            m_v.name(variable.oldCode, NameTable::Block, id);
        else if (m_v.purpose() == FieldVisitor::Purpose::WriteChain && variable.kind == Kind::TextStyle && id.isNull())
            m_v.optionalRef(variable.code, RefKind::HardPointer, m_standardStyle);
        else
            m_v.optionalRef(variable.code, RefKind::HardPointer, id);
    }

    FieldVisitor& m_v;
    VcDbDimVars& m_vars;
    VcDbObjectId m_standardStyle;
    bool m_isOldFile;
};

const std::string& arrowName(const DatabaseCore* db, VcDbObjectId id)
{
    static const std::string standard;
    const auto* block = db ? db->objectAs<VcDbSymbolTableRecord>(id) : nullptr;
    return block ? block->nameUtf8() : standard;
}

struct Arrow {
    std::int16_t nameCode;
    VcDbObjectId VcDbDimVars::*id;
};
constexpr Arrow kArrows[] = {{5, &VcDbDimVars::dimblk}, {6, &VcDbDimVars::dimblk1}, {7, &VcDbDimVars::dimblk2}};

}

void VcDbDimStyleTableRecord::fields(FieldVisitor& v)
{
    VcDbSymbolTableRecord::fields(v);
    v.subclass("AcDbDimStyleTableRecord");
    nameAndFlags(v);
    const VcDbDimVars before = m_vars;
    variableFields(v);
    if (!v.isReading())
        return;
    const bool hasNewUnit = m_vars.dimlunit != before.dimlunit || m_vars.dimfrac != before.dimfrac;
    if (m_vars.dimunit >= 0 && !hasNewUnit)
        takeOlderDimUnit(m_vars, m_vars.dimunit);
    const bool hasNewFit = m_vars.dimatfit != before.dimatfit || m_vars.dimtmove != before.dimtmove;
    if (m_vars.dimfit >= 0 && !hasNewFit)
        takeOlderDimFit(m_vars, m_vars.dimfit);
    if (v.isChain())
        m_vars.dimunit = m_vars.dimfit = -1;
}

void VcDbDimStyleTableRecord::variableFields(FieldVisitor& v)
{
    const DatabaseCore* db = DatabaseCore::of(m_id);
    VariableField field(v, m_vars, db ? db->findRecord(NameTable::TextStyle, "Standard") : VcDbObjectId());
    if (v.isFile() && v.atLeast(DxfVersion::R2000)) {
        for (const DimVariable* variable : dimVariablesByCode())
            field(*variable);
        return;
    }
    bool namesDone = !v.isChain();
    for (const DimVariable& variable : dimVariables()) {
        const bool isNamedArrow = variable.oldCode != 0 && v.isChain();
        if (isNamedArrow && !namesDone)
            arrowNameFields(v);
        namesDone |= isNamedArrow;
        field(variable);
    }
}

// A chain has arrows by name beside their references; a name that says something else than the reference wins.
void VcDbDimStyleTableRecord::arrowNameFields(FieldVisitor& v)
{
    const DatabaseCore* db = DatabaseCore::of(m_id);
    std::string ArrowNames::*const places[] = {&ArrowNames::both, &ArrowNames::first, &ArrowNames::second};
    ArrowNames named;
    for (int i = 0; i < 3; ++i) {
        const std::string& now = arrowName(db, m_vars.*kArrows[i].id);
        std::string name = now;
        v.text(kArrows[i].nameCode, name);
        if (!v.isReading() || name == now)
            continue;
        named.*places[i] = name;
        m_vars.*kArrows[i].id = {};
    }
    if (v.isReading())
        m_namedArrows.set(std::move(named));
}

void VcDbDimStyleTableRecord::fieldsChanged()
{
    takeExtendedData();
    resolveArrowNames();
}

Vcad::ErrorStatus VcDbDimStyleTableRecord::resolveArrowNames()
{
    DatabaseCore* db = DatabaseCore::of(m_id);
    if (!db || !m_namedArrows.isSet())
        return Vcad::eOk;
    Vcad::ErrorStatus status = Vcad::eOk;
    const std::string* names[] = {&m_namedArrows->both, &m_namedArrows->first, &m_namedArrows->second};
    for (int i = 0; i < 3; ++i) {
        if (names[i]->empty())
            continue;
        const VcDbObjectId block = arrowBlock(*db, *names[i]);
        if (block.isNull())
            status = Vcad::eKeyNotFound;
        else
            m_vars.*kArrows[i].id = block;
    }
    m_namedArrows.reset();
    return status;
}

// Extended data: pairs of a code and its value, under an application of our own.

namespace {

constexpr const char* kSubUnits = "VEKAD_DIMSUBUNITS";

bool beginsSubUnits(const Tag& tag)
{
    return tag.code == 1001 && tag.form == Tag::Form::Utf8 && equalNoCase(tag.view(), kSubUnits);
}

void take(VcDbDimVars& vars, const DimVariable& variable, const Tag& value)
{
    if (const auto* text = std::get_if<std::string VcDbDimVars::*>(&variable.member)) {
        if (value.form == Tag::Form::Utf8)
            vars.** text = value.view();
    } else if (value.form == Tag::Form::Real && value.real > 0) {
        setDimNumber(vars, variable, value.real);
    }
}

void putValue(TagList& to, const DimVariable& variable, const VcDbDimVars& vars)
{
    to.addInteger(1070, variable.code);
    if (const auto* text = std::get_if<std::string VcDbDimVars::*>(&variable.member))
        to.addText(1000, vars.**text);
    else
        to.add(Tag::ofReal(1040, dimNumber(vars, variable)));
}

void copyData(VcDbDimVars& to, const VcDbDimVars& from)
{
    to.dimmzf = from.dimmzf;
    to.dimmzs = from.dimmzs;
    to.dimaltmzf = from.dimaltmzf;
    to.dimaltmzs = from.dimaltmzs;
}

}

void VcDbDimStyleTableRecord::takeExtendedData()
{
    copyData(m_vars, VcDbDimVars());
    const ObjectExtras* extras = this->extras();
    if (!extras)
        return;
    bool isOurs = false;
    const DimVariable* variable = nullptr;
    for (const Tag& tag : extras->xdata) {
        if (tag.code == 1001)
            isOurs = beginsSubUnits(tag);
        else if (isOurs && tag.code == 1070)
            variable = findDimVariable(int(tag.integer));
        else if (isOurs && variable && variable->isInExtendedData())
            take(m_vars, *variable, tag);
    }
}

void VcDbDimStyleTableRecord::putExtendedData()
{
    VcDbDimVars plain = m_vars;
    copyData(plain, VcDbDimVars());
    const ObjectExtras* extras = this->extras();
    if (plain == m_vars && !extras)
        return;
    TagList all;
    bool isOurs = false;
    if (extras)
        for (const Tag& tag : extras->xdata) {
            isOurs = tag.code == 1001 ? beginsSubUnits(tag) : isOurs;
            if (!isOurs)
                all.add(tag);
        }
    if (plain != m_vars) {
        all.addText(1001, kSubUnits);
        for (const DimVariable& variable : dimVariables())
            if (variable.isInExtendedData())
                putValue(all, variable, m_vars);
        if (DatabaseCore* db = DatabaseCore::of(m_id))
            db->recordFor(NameTable::AppId, kSubUnits);
    }
    all.shrink();
    makeExtras().xdata = std::move(all);
}
