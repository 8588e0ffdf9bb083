// -LINETYPE - lists linetypes, loads them from files and chooses that of new objects.
#include "host/base/files.h"
#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/base/wildcard.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/db/database.h"
#include "host/db/record_names.h"
#include "host/edit/support_path.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_records.h"

namespace vk::commands {

namespace {

using namespace edit;
using Record = VcDbLinetypeTableRecord;

constexpr std::size_t kMostDashes = 12;

struct Definition {
    std::string name, description;
    std::vector<Record::Dash> dashes;
};

std::vector<std::string_view> linesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        lines.push_back(trimBlanks(text.substr(at, end - at)));
        at = end + 1;
    }
    return lines;
}

// Items between commas; what stands in brackets is one item.
std::vector<std::string_view> itemsOf(std::string_view line)
{
    std::vector<std::string_view> items;
    int depth = 0;
    std::size_t from = 0;
    for (std::size_t i = 0; i <= line.size(); ++i) {
        if (i == line.size() || (line[i] == ',' && depth == 0)) {
            items.push_back(trimBlanks(line.substr(from, i - from)));
            from = i + 1;
            continue;
        }
        depth += line[i] == '[' ? 1 : line[i] == ']' ? -1 : 0;
    }
    return items;
}

// ["GAS",STANDARD,S=.1,R=0.0,X=-0.1,Y=-.05] on the dash before it. A shape needs its file, so it is left out.
bool putText(const DatabaseCore& db, std::string_view item, Record::Dash& dash)
{
    const auto parts = itemsOf(item.substr(1, item.size() - 2));
    if (parts.size() < 2 || parts[0].size() < 2 || parts[0].front() != '"' || parts[0].back() != '"')
        return false;
    dash.style = db.findRecord(NameTable::TextStyle, parts[1]);
    if (dash.style.isNull())
        return false;
    dash.text = std::string(parts[0].substr(1, parts[0].size() - 2));
    dash.flags = Record::kText;
    for (std::size_t i = 2; i < parts.size(); ++i) {
        const std::string part = toUpper(parts[i]);
        const auto value =
            part.size() > 2 && part[1] == '=' ? parseReal(std::string_view(part).substr(2)) : std::nullopt;
        if (!value)
            return false;
        switch (part[0]) {
        case 'S':
            dash.scale = *value;
            break;
        case 'R':
            dash.rotation = *value * M_PI / 180;
            break;
        case 'A':
            dash.rotation = *value * M_PI / 180;
            dash.flags |= Record::kAbsoluteRotation;
            break;
        case 'U':
            dash.rotation = *value * M_PI / 180;
            dash.flags |= Record::kUprightText;
            break;
        case 'X':
            dash.offset.x = *value;
            break;
        case 'Y':
            dash.offset.y = *value;
            break;
        default:
            return false;
        }
    }
    return true;
}

std::optional<std::vector<Record::Dash>> dashesOf(const DatabaseCore& db, std::string_view line)
{
    std::vector<Record::Dash> dashes;
    const auto items = itemsOf(line);
    if (items.empty() || !equalNoCase(items[0], "A"))
        return std::nullopt;
    for (std::size_t i = 1; i < items.size(); ++i) {
        if (items[i].starts_with('[')) {
            if (dashes.empty() || !items[i].ends_with(']') || !putText(db, items[i], dashes.back()))
                return std::nullopt;
            continue;
        }
        const auto length = parseReal(items[i]);
        if (!length || dashes.size() >= kMostDashes)
            return std::nullopt;
        dashes.emplace_back().length = *length;
    }
    return dashes.size() >= 2 ? std::optional(dashes) : std::nullopt;
}

// *NAME,description, and the pattern on the next line.
std::vector<Definition> definitionsIn(Editor& ed, std::string_view text, const Wildcard& pattern)
{
    std::vector<Definition> found;
    const auto lines = linesOf(text);
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
        if (!lines[i].starts_with('*'))
            continue;
        const std::size_t comma = std::min(lines[i].find(','), lines[i].size());
        const std::string name(trimBlanks(lines[i].substr(1, comma - 1)));
        if (!pattern.matches(name))
            continue;
        const auto dashes = dashesOf(ed.db(), lines[i + 1]);
        if (!dashes || !isLegalRecordName(name))
            ed.printLine(
                fmt::format("Linetype \"{}\" cannot be used: line {} of the file is no pattern.", name, i + 2));
        else
            found.push_back(
                {name, std::string(comma < lines[i].size() ? trimBlanks(lines[i].substr(comma + 1)) : ""), *dashes});
    }
    return found;
}

void take(Editor& ed, const Definition& definition)
{
    auto* known = ed.db().liveAs<Record>(ed.db().findRecord(NameTable::Linetype, definition.name));
    if (known && ed.vars().integer("EXPERT") < 3 &&
        ed.keyword(fmt::format("Linetype \"{}\" is already loaded. Reload it? [Yes/No] <Y>", definition.name), "Yes No",
                   "Yes") == "No")
        return;
    if (!known) {
        auto made = std::make_unique<Record>();
        made->setNameUtf8(definition.name);
        known = made.get();
        if (ed.db().table(NameTable::Linetype).add(made.get()))
            return ed.printLine(fmt::format("Linetype \"{}\" cannot be added.", definition.name));
        made.release()->close();
    }
    known->setPattern(definition.description, definition.dashes);
    ed.printLine(fmt::format("Linetype \"{}\" loaded.", definition.name));
}

void load(Editor& ed)
{
    const std::string names = ed.word("Enter linetype(s) to load");
    if (names.empty())
        return;
    const std::string byDefault = ed.vars().integer("MEASUREMENT") != 0 ? "metric.lin" : "standard.lin";
    std::string file = ed.word("Enter name of linetype file to search", byDefault);
    if (fileNameOf(file).find('.') == std::string_view::npos)
        file += ".lin";
    const auto path = findSupportFile(file);
    std::string error = fmt::format("Cannot find the linetype file \"{}\" along the support path.", file);
    const auto text = path ? readWholeFile(*path, &error) : std::nullopt;
    if (!text)
        throw CommandError{error};
    const auto definitions = definitionsIn(ed, *text, Wildcard(names));
    if (definitions.empty())
        ed.printLine(fmt::format("No matching linetypes were found in {}.", file));
    for (const Definition& definition : definitions)
        take(ed, definition);
}

void list(Editor& ed)
{
    ed.printLine(fmt::format("{:<24}{}", "Name", "Description"));
    for (const VcDbObjectId id : ed.db().table(NameTable::Linetype).records())
        if (const auto* record = ed.db().objectAs<Record>(id))
            ed.printLine(fmt::format("{:<24}{}", record->nameUtf8(), record->descriptionUtf8()));
}

void set(Editor& ed)
{
    for (;;) {
        const std::string name = ed.word("Specify linetype name or [?]", ed.vars().text("CELTYPE"));
        if (name == "?")
            list(ed);
        else if (ed.vars().set("CELTYPE", name) == SetVarResult::Done)
            return;
        else
            ed.printLine(fmt::format("Linetype \"{}\" is not loaded.", name));
    }
}

void linetype(Editor& ed)
{
    ed.printLine(fmt::format("Current line type:  \"{}\"", ed.vars().text("CELTYPE")));
    Question question;
    question.kind = Question::Kind::Keyword;
    question.prompt = "Enter an option [?/Load/Set]: ";
    question.init.keywords = parseKeywords("? Load Set");
    question.hasDefault = true;
    for (;;) {
        const Answer a = ed.ask(question);
        if (a.status == Answer::Status::Enter)
            return;
        a.text == "?" ? list(ed) : a.text == "Load" ? load(ed) : set(ed);
    }
}

const HostCommand kCommands[] = {
    {"-LINETYPE", "-LT", kPlain, "Loads linetypes and chooses that of new objects.", linetype},
    {"LINETYPE", "LT", kPlain, "Loads linetypes and chooses that of new objects.", linetype},
};

}

std::span<const HostCommand> linetypeCommands() { return kCommands; }

}
