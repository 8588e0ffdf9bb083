// -PURGE, -RENAME - takes out what nothing refers to; gives records other names.
#include "host/base/unicode.h"
#include "host/base/wildcard.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/db/extras.h"
#include "host/db/record_names.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_text.h"

#include <span>
#include <unordered_set>

namespace vk::commands {

namespace {

using namespace edit;

struct Item {
    VcDbObject* object;
    std::string name;
};
using Items = std::vector<Item>;

struct Kind {
    const char* keyword;
    const char* singular;
    NameTable table;
    const char* dictionary;  // or null for a table
};
constexpr Kind kKinds[] = {
    {"Blocks", "block", NameTable::Block, nullptr},
    {"Dimstyles", "dimension style", NameTable::DimStyle, nullptr},
    {"LAyers", "layer", NameTable::Layer, nullptr},
    {"LTypes", "linetype", NameTable::Linetype, nullptr},
    {"SHapes", "shape file", NameTable::TextStyle, nullptr},
    {"textSTyles", "text style", NameTable::TextStyle, nullptr},
    {"Regapps", "registered application", NameTable::AppId, nullptr},
    {"Groups", "group", NameTable::Block, "ACAD_GROUP"},
    {"MAterials", "material", NameTable::Block, "ACAD_MATERIAL"},
    {"MUltileaderstyles", "multileader style", NameTable::Block, "ACAD_MLEADERSTYLE"},
    {"Plotstyles", "plot style", NameTable::Block, "ACAD_PLOTSTYLENAME"},
    {"MLinestyles", "multiline style", NameTable::Block, "ACAD_MLINESTYLE"},
    {"Tablestyles", "table style", NameTable::Block, "ACAD_TABLESTYLE"},
    {"Visualstyles", "visual style", NameTable::Block, "ACAD_VISUALSTYLE"},
};

bool isOfKind(const Kind& kind, const VcDbSymbolTableRecord& record)
{
    if (record.isDependent())
        return false;
    if (const auto* block = VcDbBlockTableRecord::cast(&record))
        return !block->isLayout() && !block->isFromExternalReference();
    if (const auto* style = VcDbTextStyleTableRecord::cast(&record))
        return style->isShapeFile() == (std::string_view(kind.keyword) == "SHapes");
    return true;
}

Items recordsOf(Editor& ed, const Kind& kind)
{
    Items items;
    for (const VcDbObjectId id : ed.db().table(kind.table).records())
        if (auto* record = ed.db().objectAs<VcDbSymbolTableRecord>(id); isOfKind(kind, *record))
            items.push_back({record, record->nameUtf8()});
    return items;
}

// The standard entries of a dictionary, and those that the header names, stay.
bool isStandardEntry(const Editor& ed, const Kind& kind, const std::string& name)
{
    static constexpr std::string_view kAlways[] = {"Standard", "ByLayer", "ByBlock", "Global", "Normal"};
    for (const std::string_view standard : kAlways)
        if (equalNoCase(name, standard))
            return true;
    static constexpr std::pair<std::string_view, const char*> kCurrent[] = {
        {"MLinestyles", "CMLSTYLE"}, {"Tablestyles", "CTABLESTYLE"}, {"MUltileaderstyles", "CMLEADERSTYLE"}};
    for (const auto& [keyword, variable] : kCurrent)
        if (keyword == kind.keyword && equalNoCase(ed.vars().text(variable), name))
            return true;
    // Visual styles are the program's own and are looked up by name.
    return std::string_view(kind.keyword) == "Visualstyles";
}

Items entriesOf(Editor& ed, const Kind& kind)
{
    Items items;
    const auto* root = ed.db().objectAs<VcDbDictionary>(ed.db().rootDictionary());
    const auto* dictionary = root ? ed.db().liveAs<VcDbDictionary>(root->find(kind.dictionary)) : nullptr;
    if (!dictionary)
        return items;
    for (const auto& [name, id] : dictionary->liveEntries()) {
        VcDbObject* object = ed.db().object(id);
        const auto* group = VcDbGroup::cast(object);
        if (object && (group ? group->numEntities() == 0 : !isStandardEntry(ed, kind, name)))
            items.push_back({object, name});
    }
    return items;
}

// Extended data needs its applications, and names layers, without referring to their records.
std::unordered_set<std::string> namedByExtendedData(const DatabaseCore& db, NameTable table)
{
    const int code = table == NameTable::AppId ? 1001 : 1003;
    std::unordered_set<std::string> names;
    for (std::uint32_t slot = 1; slot < db.slotCount(); ++slot) {
        const VcDbObject* object = db.objectAt(slot);
        if (!object || object->isErased() || !object->extras())
            continue;
        for (const Tag& tag : object->extras()->xdata)
            if (tag.code == code && tag.form == Tag::Form::Utf8)
                names.insert(foldKey(tag.view()));
    }
    return names;
}

// What nothing needs.
Items purgeable(Editor& ed, const Kind& kind)
{
    Items items = kind.dictionary ? entriesOf(ed, kind) : recordsOf(ed, kind);
    VcDbObjectIdArray ids;
    for (const Item& item : items)
        ids.push_back(item.object->objectId());
    ed.drawing().purge(ids);
    const std::unordered_set<VcDbObjectId> free(ids.begin(), ids.end());
    std::erase_if(items, [&](const Item& item) { return !free.contains(item.object->objectId()); });
    if (!kind.dictionary && (kind.table == NameTable::AppId || kind.table == NameTable::Layer)) {
        const auto named = namedByExtendedData(ed.db(), kind.table);
        std::erase_if(items, [&](const Item& item) { return named.contains(foldKey(item.name)); });
    }
    return items;
}

class Purge {
public:
    Purge(Editor& ed, const std::string& names, bool verifies)
        : m_ed(ed), m_pattern(names.empty() ? "*" : names), m_verifies(verifies)
    {
    }

    // What a purged record alone referred to goes as well.
    void run(std::span<const Kind> kinds)
    {
        for (bool again = true; again;) {
            again = false;
            for (const Kind& kind : kinds)
                again |= purge(kind);
        }
        if (m_count == 0)
            m_ed.printLine("Nothing that is unused was found.");
    }

private:
    bool purge(const Kind& kind)
    {
        std::size_t purged = 0;
        for (const Item& item : purgeable(m_ed, kind)) {
            m_ed.throwIfInterrupted();
            if (m_pattern.matches(item.name) && !m_kept.contains(item.object->objectId()))
                purged += take(kind, item);
        }
        m_count += purged;
        return purged > 0;
    }

    bool take(const Kind& kind, const Item& item)
    {
        if (m_verifies && m_ed.keyword(fmt::format("Purge {} \"{}\"? [Yes/No] <N>", kind.singular, item.name), "Yes No",
                                       "No") == "No") {
            m_kept.insert(item.object->objectId());
            return false;
        }
        if (item.object->erase() != Vcad::eOk)
            return false;
        m_ed.printLine(fmt::format("Purging {} \"{}\".", kind.singular, item.name));
        return true;
    }

    Editor& m_ed;
    Wildcard m_pattern;
    bool m_verifies;
    std::size_t m_count = 0;
    std::unordered_set<VcDbObjectId> m_kept;
};

// Kinds that are entities

bool hasNoLength(const VcDbEntity& entity)
{
    if (const auto* line = VcDbLine::cast(&entity))
        return line->startPoint() == line->endPoint();
    if (const auto* polyline = VcDbPolyline::cast(&entity)) {
        VcGePoint2d first, next;
        polyline->getPointAt(0, first);
        for (unsigned i = 1; i < polyline->numVerts(); ++i)
            if (polyline->getPointAt(i, next) == Vcad::eOk && next != first)
                return false;
        return true;
    }
    return false;
}

bool isBlank(const wchar_t* text)
{
    const std::string utf8 = text ? wideToUtf8(text) : std::string();
    return utf8.find_first_not_of(" \t") == std::string::npos;
}

bool isEmptyText(const VcDbEntity& entity)
{
    if (const auto* text = VcDbText::cast(&entity))
        return !VcDbTaggedText::cast(&entity) && isBlank(text->textStringConst());
    const auto* mtext = VcDbMText::cast(&entity);
    return mtext && mtext->contentsUtf8().find_first_not_of(" \t") == std::string::npos;
}

void eraseWhere(Editor& ed, const char* what, bool (*matches)(const VcDbEntity&))
{
    std::size_t count = 0, locked = 0;
    for (std::uint32_t slot = 1; slot < ed.db().slotCount(); ++slot) {
        auto* entity = VcDbEntity::cast(ed.db().objectAt(slot));
        if (!entity || entity->isErased() || !matches(*entity))
            continue;
        isOnLockedLayer(*entity) ? ++locked : (entity->erase() == Vcad::eOk ? ++count : count);
    }
    ed.printLine(fmt::format("{} {} purged{}.", count, what,
                             locked > 0 ? fmt::format(", {} on locked layers left", locked) : ""));
}

void purge(Editor& ed)
{
    const std::string what = ed.keyword(
        "Enter type of unused objects to "
        "purge\n[Blocks/Dimstyles/Groups/LAyers/LTypes/MAterials/MUltileaderstyles/Plotstyles/SHapes/textSTyles/"
        "MLinestyles/Tablestyles/Visualstyles/Regapps/Zero-length geometry/Empty text objects/All]",
        "Blocks Dimstyles Groups LAyers LTypes MAterials MUltileaderstyles Plotstyles SHapes textSTyles MLinestyles "
        "Tablestyles Visualstyles Regapps "
        "Zero-length Empty All");
    if (what == "Zero-length")
        return eraseWhere(ed, "objects without length", hasNoLength);
    if (what == "Empty")
        return eraseWhere(ed, "empty texts", isEmptyText);
    const std::string names = ed.word("Enter name(s) to purge", "*");
    const bool verifies = ed.keyword("Verify each name to be purged? [Yes/No] <Y>", "Yes No", "Yes") == "Yes";
    Purge run(ed, names, verifies);
    if (what == "All")
        return run.run(kKinds);
    for (const Kind& kind : kKinds)
        if (what == kind.keyword)
            run.run({&kind, 1});
}

// Renaming

struct Renamed {
    const char* keyword;
    const char* word;
    NameTable table;
    const char* variable;  // holds the name while the record is current, or null
};
constexpr Renamed kRenamed[] = {
    {"Block", "block", NameTable::Block, "INSNAME"},
    {"Dimstyle", "dimension style", NameTable::DimStyle, "DIMSTYLE"},
    {"LAyer", "layer", NameTable::Layer, "CLAYER"},
    {"LType", "linetype", NameTable::Linetype, "CELTYPE"},
    {"Style", "text style", NameTable::TextStyle, "TEXTSTYLE"},
    {"Ucs", "UCS", NameTable::Ucs, "UCSNAME"},
    {"VIew", "view", NameTable::View, nullptr},
    {"VPort", "viewport", NameTable::Viewport, nullptr},
};

bool mayRename(const Renamed& kind, const VcDbSymbolTableRecord& record)
{
    const std::string& name = record.nameUtf8();
    if (record.isDependent() || name.starts_with('*'))
        return false;
    if (kind.table == NameTable::Layer)
        return name != "0";
    return kind.table != NameTable::Linetype ||
           !(equalNoCase(name, "ByLayer") || equalNoCase(name, "ByBlock") || equalNoCase(name, "Continuous"));
}

void renameRecord(Editor& ed, const Renamed& kind)
{
    const std::string old = ed.word(fmt::format("Enter old {} name", kind.word));
    auto* record = ed.db().liveAs<VcDbSymbolTableRecord>(ed.db().findRecord(kind.table, old));
    if (!record)
        throw CommandError{fmt::format("Cannot find {} \"{}\".", kind.word, old)};
    if (!mayRename(kind, *record))
        throw CommandError{fmt::format("The {} \"{}\" cannot be renamed.", kind.word, old)};
    const std::string name = ed.word(fmt::format("Enter new {} name", kind.word));
    const std::string before = record->nameUtf8();
    if (name.starts_with('*') || record->setName(utf8ToWide(name).c_str()))
        throw CommandError{fmt::format("\"{}\" is no name for a {}, or is taken.", name, kind.word)};
    if (kind.variable && equalNoCase(ed.vars().text(kind.variable), before))
        ed.vars().force(kind.variable, name);
}

void rename(Editor& ed)
{
    const std::string what = ed.keyword("Enter object type to rename [Block/Dimstyle/LAyer/LType/Style/Ucs/VIew/VPort]",
                                        "Block Dimstyle LAyer LType Style Ucs VIew VPort");
    for (const Renamed& kind : kRenamed)
        if (what == kind.keyword)
            renameRecord(ed, kind);
}

const HostCommand kCommands[] = {
    {"-PURGE", "-PU", kPlain, "Takes out what nothing in the drawing uses.", purge},
    {"PURGE", "PU", kPlain, "Takes out what nothing in the drawing uses.", purge},
    {"-RENAME", "-REN", kPlain, "Gives layers, blocks and styles other names.", rename},
    {"RENAME", "REN", kPlain, "Gives layers, blocks and styles other names.", rename},
};

}

std::span<const HostCommand> purgeCommands() { return kCommands; }

}
