#include "dim/ArrowBlocks.h"

#include "core/PublicFunction.h"
#include "vcdb_curves.h"
#include "vcdb_faces.h"
#include "vcdb_tables.h"
#include "vchost.h"

#include <memory>
#include <vector>

namespace {

// An arrow points along X with its tip at the origin and is one unit long: the dimension line begins at -1,0.
struct Piece {
    enum Kind {
        Line,    // from x1,y1 to x2,y2
        Stroke,  // the same, as a polyline with that width
        Circle,  // about x1,y1
        Disc,    // a filled circle about the origin
        Solid,   // a triangle of three points
        Bow,     // from x1,y1 to x2,y2 with that bulge
    };
    Kind kind;
    double x1, y1, x2 = 0, y2 = 0;
    double size = 0;  // width, radius or bulge
    double y3 = 0;    // of a solid, whose third point has size as its x
};

using enum Piece::Kind;

struct ArrowDesign {
    const wchar_t* name;
    std::vector<Piece> pieces;
};

constexpr double kFlat = 1.0 / 6;                           // half the height of the usual arrow head
constexpr double kHalfOf30 = 0.26794919243112270647;        // tan 15
constexpr double kHalfOfTriangle = 0.57735026918962576451;  // tan 30
constexpr Piece kAxis = {Line, 0, 0, -1, 0};
constexpr Piece kTail = {Line, -0.5, 0, -1, 0};

// OBLIQUE and NONE have nothing in them.
const std::vector<ArrowDesign>& designs()
{
    static const std::vector<ArrowDesign> all = {
        {L"DOT", {{Disc, 0, 0, 0, 0, 0.5}, kTail}},
        {L"DOTSMALL", {{Disc, 0, 0, 0, 0, 0.25}}},
        {L"DOTBLANK", {{Circle, 0, 0, 0, 0, 0.5}, kTail}},
        {L"ORIGIN", {{Circle, 0, 0, 0, 0, 0.5}, kAxis}},
        {L"ORIGIN2", {{Circle, 0, 0, 0, 0, 0.5}, {Circle, 0, 0, 0, 0, 0.25}, kTail}},
        {L"OPEN", {{Line, -1, kFlat, 0, 0}, {Line, 0, 0, -1, -kFlat}, kAxis}},
        {L"OPEN90", {{Line, -0.5, 0.5, 0, 0}, {Line, 0, 0, -0.5, -0.5}, kAxis}},
        {L"OPEN30", {{Line, -1, kHalfOf30, 0, 0}, {Line, 0, 0, -1, -kHalfOf30}, kAxis}},
        {L"CLOSED", {{Line, -1, kFlat, 0, 0}, {Line, 0, 0, -1, -kFlat}, {Line, -1, kFlat, -1, -kFlat}, kAxis}},
        {L"SMALL", {{Circle, 0, 0, 0, 0, 0.25}}},
        {L"NONE", {}},
        {L"OBLIQUE", {}},
        {L"BOXFILLED", {{Stroke, -0.5, 0, 0.5, 0, 1}, kTail}},
        {L"BOXBLANK",
         {{Line, -0.5, -0.5, 0.5, -0.5},
          {Line, 0.5, -0.5, 0.5, 0.5},
          {Line, 0.5, 0.5, -0.5, 0.5},
          {Line, -0.5, 0.5, -0.5, -0.5},
          kTail}},
        {L"CLOSEDBLANK", {{Line, -1, kFlat, 0, 0}, {Line, 0, 0, -1, -kFlat}, {Line, -1, kFlat, -1, -kFlat}}},
        {L"DATUMFILLED", {{Solid, 0, kHalfOfTriangle, -1, 0, 0, -kHalfOfTriangle}}},
        {L"DATUMBLANK",
         {{Line, 0, kHalfOfTriangle, -1, 0},
          {Line, -1, 0, 0, -kHalfOfTriangle},
          {Line, 0, -kHalfOfTriangle, 0, kHalfOfTriangle}}},
        {L"INTEGRAL", {{Bow, 0, 0, -0.35, -0.45, -0.3}, {Bow, 0, 0, 0.35, 0.45, -0.3}}},
        {L"ARCHTICK", {{Stroke, -0.5, -0.5, 0.5, 0.5, 0.15}}},
    };
    return all;
}

CStdStrW withUnderscore(const wchar_t* name) { return *name == L'_' ? CStdStrW(name) : L"_" + CStdStrW(name); }

const ArrowDesign* findDesign(const CStdStrW& block)
{
    for (const ArrowDesign& design : designs())
        if (strings_i_compare(withUnderscore(design.name), block) == 0)
            return &design;
    return nullptr;
}

VcGePoint3d at(double x, double y) { return {x, y, 0}; }

std::unique_ptr<VcDbEntity> path(VcGePoint2d from, VcGePoint2d to, double bulge, double width, bool closed)
{
    auto line = std::make_unique<VcDbPolyline>();
    line->addVertexAt(0, from, bulge, width, width);
    line->addVertexAt(1, to, bulge, width, width);
    line->setClosed(closed);
    return line;
}

std::unique_ptr<VcDbEntity> entityOf(const Piece& p)
{
    switch (p.kind) {
    case Line:
        return std::make_unique<VcDbLine>(at(p.x1, p.y1), at(p.x2, p.y2));
    case Stroke:
        return path({p.x1, p.y1}, {p.x2, p.y2}, 0, p.size, false);
    case Circle:
        return std::make_unique<VcDbCircle>(at(p.x1, p.y1), VcGeVector3d::zAxis(), p.size);
    case Disc:
        // Two half circles as wide as they are far across leave no hole.
        return path({-p.size / 2, 0}, {p.size / 2, 0}, 1, p.size, true);
    case Solid:
        return std::make_unique<VcDbSolid>(at(p.x1, p.y1), at(p.x2, p.y2), at(p.size, p.y3), at(p.size, p.y3));
    case Bow:
        return path({p.x1, p.y1}, {p.x2, p.y2}, p.size, 0, false);
    }
    return nullptr;
}

// Colour and linetype are those of the dimension.
void drawArrow(VcDbBlockTableRecord& block, const ArrowDesign& design)
{
    constexpr std::uint16_t kByBlock = 0;
    for (const Piece& piece : design.pieces) {
        std::unique_ptr<VcDbEntity> made = entityOf(piece);
        if (block.appendVcDbEntity(made.get()) != Vcad::eOk)
            continue;
        VcDbEntity* entity = made.release();
        entity->setLayer(L"0");
        entity->setColorIndex(kByBlock);
        entity->setLinetype(L"ByBlock");
        entity->close();
    }
}

// An empty block, open for the caller, who ends it by closing it; null when it cannot be added.
VcDbBlockTableRecord* dwg_addblock(VcDbBlockTable& blocks, const wchar_t* name)
{
    auto record = std::make_unique<VcDbBlockTableRecord>();
    record->setName(name);
    VcDbObjectId id;
    return blocks.add(id, record.get()) == Vcad::eOk ? record.release() : nullptr;
}

void dwg_addendblk(VcDbBlockTableRecord* block) { block->close(); }

// The variables hold arrows by name; written back they find the block that has just come into being.
void refreshArrowVariables()
{
    constexpr std::size_t kSize = 1024;
    for (const wchar_t* variable : {L"DIMBLK", L"DIMBLK1", L"DIMBLK2", L"DIMLDRBLK"}) {
        wchar_t value[kSize] = {};
        get_acad_str_var(variable, value, kSize);
        set_acad_str_var(variable, value);
    }
}

bool checkBlock(const wchar_t* name, VcDbDatabase* database)
{
    if (!name || !IsInternalArrow(name))
        return false;
    const CStdStrW blockName = withUnderscore(name);
    VcDbBlockTable* blocks = nullptr;
    if (!database || database->getSymbolTable(blocks, VcDb::kForWrite) != Vcad::eOk)
        return false;
    const bool known = blocks->has(blockName);
    VcDbBlockTableRecord* block = known ? nullptr : dwg_addblock(*blocks, blockName);
    blocks->close();
    if (block) {
        refreshArrowVariables();
        drawArrow(*block, *findDesign(blockName));
        dwg_addendblk(block);
    }
    return known || block;
}

}  // namespace

bool IsInternalArrow(const wchar_t* name)
{
    constexpr std::size_t kLongest = 255;
    return name && *name && findDesign(withUnderscore(CStdStrW(name).Left(kLongest)));
}

CStdStrW internalArrowName(const wchar_t* name) { return withUnderscore(name).MakeUpper(); }

bool vds_checkArrowheadBlock(const wchar_t* name, VcDbDatabase* database)
{
    return checkBlock(name, database ? database : vcdbHostApplicationServices()->workingDatabase());
}
