#include "host/db/rec_arrow_blocks.h"

#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/standard_objects.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_tables.h"

namespace {

// An arrow points to the right, its tip at the origin, and is one unit long: the dimension line goes on from -1,0.
struct Shape {
    enum class Kind : std::uint8_t { Line, Circle, Disc, Solid, Stroke, Bow };
    Kind kind;
    double a[6];
};

using enum Shape::Kind;

struct ArrowDesign {
    const char* name;
    std::vector<Shape> shapes;
};

constexpr double kSixth = 1.0 / 6, kTan15 = 0.26794919243112270647, kTan30 = 0.57735026918962576451;

// Line: two points. Circle: centre, radius. Disc: half the radius, filled. Solid: three points, or a square's half side in
// the first. Stroke: two points, width. Bow: two points, bulge.
const std::vector<ArrowDesign>& designs()
{
    static const std::vector<ArrowDesign> all = {
        {"DOT", {{Disc, {0.25}}, {Line, {-0.5, 0, -1, 0}}}},
        {"DOTSMALL", {{Disc, {0.0625}}}},
        {"DOTBLANK", {{Circle, {0, 0, 0.5}}, {Line, {-0.5, 0, -1, 0}}}},
        {"ORIGIN", {{Circle, {0, 0, 0.5}}, {Line, {0, 0, -1, 0}}}},
        {"ORIGIN2", {{Circle, {0, 0, 0.5}}, {Circle, {0, 0, 0.25}}, {Line, {-0.5, 0, -1, 0}}}},
        {"OPEN", {{Line, {-1, kSixth, 0, 0}}, {Line, {0, 0, -1, -kSixth}}, {Line, {0, 0, -1, 0}}}},
        {"OPEN90", {{Line, {-0.5, 0.5, 0, 0}}, {Line, {0, 0, -0.5, -0.5}}, {Line, {0, 0, -1, 0}}}},
        {"OPEN30", {{Line, {-1, kTan15, 0, 0}}, {Line, {0, 0, -1, -kTan15}}, {Line, {0, 0, -1, 0}}}},
        {"CLOSED",
         {{Line, {-1, kSixth, 0, 0}},
          {Line, {0, 0, -1, -kSixth}},
          {Line, {-1, kSixth, -1, -kSixth}},
          {Line, {0, 0, -1, 0}}}},
        {"SMALL", {{Circle, {0, 0, 0.25}}}},
        {"NONE", {}},
        {"OBLIQUE", {{Line, {-0.5, -0.5, 0.5, 0.5}}}},
        {"BOXFILLED", {{Solid, {0.5}}, {Line, {-0.5, 0, -1, 0}}}},
        {"BOXBLANK",
         {{Line, {-0.5, -0.5, 0.5, -0.5}},
          {Line, {0.5, -0.5, 0.5, 0.5}},
          {Line, {0.5, 0.5, -0.5, 0.5}},
          {Line, {-0.5, 0.5, -0.5, -0.5}},
          {Line, {-0.5, 0, -1, 0}}}},
        {"CLOSEDBLANK", {{Line, {-1, kSixth, 0, 0}}, {Line, {0, 0, -1, -kSixth}}, {Line, {-1, kSixth, -1, -kSixth}}}},
        {"DATUMFILLED", {{Solid, {0, kTan30, -1, 0, 0, -kTan30}}}},
        {"DATUMBLANK", {{Line, {0, kTan30, -1, 0}}, {Line, {-1, 0, 0, -kTan30}}, {Line, {0, -kTan30, 0, kTan30}}}},
        {"INTEGRAL", {{Bow, {0, 0, -0.35, -0.45, -0.3}}, {Bow, {0, 0, 0.35, 0.45, -0.3}}}},
        {"ARCHTICK", {{Stroke, {-0.5, -0.5, 0.5, 0.5, 0.15}}}},
    };
    return all;
}

const ArrowDesign* findDesign(std::string_view name)
{
    if (!name.empty() && name.front() == '_')
        name.remove_prefix(1);
    for (const ArrowDesign& design : designs())
        if (equalNoCase(design.name, name))
            return &design;
    return nullptr;
}

VcGePoint3d at(double x, double y) { return {x, y, 0}; }

std::unique_ptr<VcDbEntity> solid(const double (&a)[6])
{
    if (a[1] != 0)
        return std::make_unique<VcDbSolid>(at(a[0], a[1]), at(a[2], a[3]), at(a[4], a[5]), at(a[4], a[5]));
    const double h = a[0];
    return std::make_unique<VcDbSolid>(at(-h, -h), at(h, -h), at(-h, h), at(h, h));
}

std::unique_ptr<VcDbEntity> path(VcGePoint2d from, VcGePoint2d to, double bulge, double width)
{
    auto line = std::make_unique<VcDbPolyline>();
    line->addVertexAt(0, from, bulge, width, width);
    line->addVertexAt(1, to, bulge, width, width);
    return line;
}

// Two half circles drawn as wide as their radius leave no hole.
std::unique_ptr<VcDbEntity> disc(double halfRadius)
{
    auto ring = std::make_unique<VcDbPolyline>();
    ring->addVertexAt(0, {-halfRadius, 0}, 1, 2 * halfRadius, 2 * halfRadius);
    ring->addVertexAt(1, {halfRadius, 0}, 1, 2 * halfRadius, 2 * halfRadius);
    ring->setClosed(true);
    return ring;
}

std::unique_ptr<VcDbEntity> entityOf(const Shape& shape)
{
    const auto& a = shape.a;
    switch (shape.kind) {
    case Line:
        return std::make_unique<VcDbLine>(at(a[0], a[1]), at(a[2], a[3]));
    case Circle:
        return std::make_unique<VcDbCircle>(at(a[0], a[1]), VcGeVector3d::zAxis(), a[2]);
    case Disc:
        return disc(a[0]);
    case Solid:
        return solid(a);
    case Stroke:
        return path({a[0], a[1]}, {a[2], a[3]}, 0, a[4]);
    case Bow:
        return path({a[0], a[1]}, {a[2], a[3]}, a[4], 0);
    }
    return nullptr;
}

VcDbObjectId makeArrowBlock(DatabaseCore& db, const ArrowDesign& design)
{
    VcDbBlockTableRecord& block = addBlockRecord(db, std::string("_") + design.name);
    for (const Shape& shape : design.shapes) {
        VcDbEntity* entity = entityOf(shape).release();
        block.appendVcDbEntity(entity);
        entity->setLayer(db.findRecord(NameTable::Layer, "0"));
        entity->setColorIndex(VcCmColor::kAciByBlock);
        entity->setLinetype(db.findRecord(NameTable::Linetype, "ByBlock"));
        entity->close();
    }
    return block.objectId();
}

}

bool isBuiltInArrow(std::string_view name) { return findDesign(name) != nullptr; }

VcDbObjectId arrowBlock(DatabaseCore& db, std::string_view name)
{
    if (const VcDbObjectId block = db.findRecord(NameTable::Block, name); !block.isNull())
        return block;
    const ArrowDesign* design = findDesign(name);
    if (!design)
        return {};
    const VcDbObjectId block = db.findRecord(NameTable::Block, std::string("_") + design->name);
    return block.isNull() ? makeArrowBlock(db, *design) : block;
}
