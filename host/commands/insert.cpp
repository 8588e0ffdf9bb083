// INSERT, MINSERT - places blocks and other drawings.
#include "host/base/unicode.h"
#include "host/commands/block_definition.h"
#include "host/commands/drawing.h"
#include "host/commands/explode.h"
#include "host/commands/families.h"
#include "host/commands/reference_prompts.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_tables.h"

namespace vk::commands {

namespace {

using namespace edit;
using Block = VcDbBlockTableRecord;

struct Wanted {
    Block* block = nullptr;
    bool inParts = false;
};

// NAME=FILE takes the file anew where the block is known; NAME= takes the file of that name.
Block* fromFile(Editor& ed, const std::string& name, const std::string& file)
{
    if (blockNamed(ed, name) && ed.vars().integer("EXPERT") < 2 &&
        ed.keyword(fmt::format("Block \"{}\" already exists. Redefine it? [Yes/No] <N>", name), "Yes No", "No") == "No")
        return nullptr;
    const std::string path = findDrawing(ed, file.empty() ? name : file);
    const bool known = blockNamed(ed, name) != nullptr;
    Block& block = blockFromFile(ed, name, path);
    if (known)
        ed.printLine(fmt::format("Block \"{}\" redefined.", name));
    return &block;
}

Block* resolve(Editor& ed, const std::string& typed)
{
    if (const std::size_t at = typed.find('='); at != std::string::npos)
        return fromFile(ed, typed.substr(0, at), typed.substr(at + 1));
    if (Block* known = blockNamed(ed, typed))
        return known;
    const std::string path = findDrawing(ed, typed), name = blockNameOf(path);
    if (Block* known = blockNamed(ed, name))
        return known;
    return &blockFromFile(ed, name, path);
}

// Asked again while there is no such block. An error of a driving command ends it.
Wanted askBlock(Editor& ed, bool mayBeParts)
{
    for (;;) {
        const std::string last = ed.vars().text("INSNAME");
        std::string name = ed.word("Enter block name or [?]", last.empty() ? std::optional<std::string>() : last);
        if (name.empty())
            return {};
        if (name == "?") {
            listBlocks(ed, ed.word("Enter block(s) to list", "*"));
            continue;
        }
        Wanted wanted;
        wanted.inParts = mayBeParts && name.starts_with('*');
        try {
            wanted.block = resolve(ed, wanted.inParts ? name.substr(1) : name);
        } catch (const CommandError& error) {
            if (ed.isDriven())
                throw;
            ed.printLine(error.message);
            continue;
        }
        if (!wanted.block)
            continue;
        if (wanted.block->isLayout())
            throw CommandError{"The block of a layout cannot be inserted."};
        ed.vars().force("INSNAME", wanted.block->nameUtf8());
        return wanted;
    }
}

template <class T>
T& addReference(Editor& ed, std::unique_ptr<T> reference, const std::vector<std::string>& values)
{
    T& added = *reference;
    addToSpace(ed, std::move(reference));
    addAttributes(ed, added, values);
    return added;
}

void insertInParts(Editor& ed, Block& block)
{
    const Placement placement = askPlacement(ed, true, &block);
    auto reference = std::make_unique<VcDbBlockReference>();
    reference->setBlockTableRecord(block.objectId());
    place(ed, *reference, placement, unitFactor(ed, block));
    VcDbBlockReference& added = addReference(ed, std::move(reference), {});
    if (!explodeInPlace(ed.db(), added))
        throw CommandError{fmt::format("Block \"{}\" cannot be broken into its parts.", block.nameUtf8())};
}

void insert(Editor& ed)
{
    const Wanted wanted = askBlock(ed, true);
    if (!wanted.block)
        return;
    if (wanted.inParts)
        return insertInParts(ed, *wanted.block);
    const Placement placement = askPlacement(ed, false, wanted.block);
    const auto values = askAttributeValues(ed, *wanted.block);
    auto reference = std::make_unique<VcDbBlockReference>();
    reference->setBlockTableRecord(wanted.block->objectId());
    place(ed, *reference, placement, unitFactor(ed, *wanted.block));
    addReference(ed, std::move(reference), values);
}

std::uint16_t askCount(Editor& ed, std::string_view prompt)
{
    for (;;) {
        const auto count = ed.integer(prompt, 1);
        if (count >= 1 && count <= 32767)
            return std::uint16_t(count);
        ed.printLine("Requires a whole number from 1 to 32767.");
    }
}

struct Grid {
    std::uint16_t rows = 1, columns = 1;
    double rowSpacing = 0, columnSpacing = 0;
};

// Both distances may be shown as the corners of a cell.
Grid askGrid(Editor& ed)
{
    Grid grid;
    do {
        grid.rows = askCount(ed, "Enter number of rows (---)");
        grid.columns = askCount(ed, "Enter number of columns (|||)");
        if (grid.rows == 1 && grid.columns == 1)
            ed.printLine("One row and one column make no array; INSERT places a single block.");
    } while (grid.rows == 1 && grid.columns == 1);
    if (grid.rows > 1) {
        const Answer a = ed.askReal("Enter distance between rows or specify unit cell (---)",
                                    {.keywords = "Cell", .bits = InitGet::NoZero});
        if (a.status == Answer::Status::Keyword) {
            const VcGePoint3d p = ed.point("Specify first corner"),
                              q = ed.point("Specify opposite corner", {.from = p});
            grid.rowSpacing = q.y - p.y;
            grid.columnSpacing = q.x - p.x;
            return grid;
        }
        grid.rowSpacing = a.real;
    }
    if (grid.columns > 1)
        grid.columnSpacing = ed.askDistance("Specify distance between columns (|||)", {.bits = InitGet::NoZero}).real;
    return grid;
}

void minsert(Editor& ed)
{
    const Wanted wanted = askBlock(ed, false);
    if (!wanted.block)
        return;
    const Placement placement = askPlacement(ed, false, wanted.block);
    const Grid grid = askGrid(ed);
    const auto values = askAttributeValues(ed, *wanted.block);
    auto reference = std::make_unique<VcDbMInsertBlock>();
    reference->setBlockTableRecord(wanted.block->objectId());
    place(ed, *reference, placement, unitFactor(ed, *wanted.block));
    reference->setRows(grid.rows);
    reference->setColumns(grid.columns);
    reference->setRowSpacing(grid.rowSpacing);
    reference->setColumnSpacing(grid.columnSpacing);
    addReference(ed, std::move(reference), values);
}

const HostCommand kCommands[] = {
    {"-INSERT", "-I", kActsOnceDriven, "Places a block or another drawing.", insert},
    {"INSERT", "I", kActsOnceDriven, "Places a block or another drawing.", insert},
    {"MINSERT", nullptr, kPlain, "Places a block as a grid of references.", minsert},
};

}

std::span<const HostCommand> insertCommands() { return kCommands; }

}
