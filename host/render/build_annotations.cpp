// Leaders, feature control frames, shapes.
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/kept_object.h"
#include "host/db/multileader.h"
#include "host/render/build_parts.h"
#include "host/render/linetype_shapes.h"
#include "sdk/vcdb_dims.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcut.h"

#include <cmath>

namespace vk::render {

namespace {

// Leaders and frames are drawn as what they explode into, so that they look alike before and after.
void buildByPieces(const VcDbEntity& e, ListBuilder& b)
{
    if (!b.addPieces(e))
        b.omit(dxfNameOf(e));
}

// A drawing says the name of a shape alone; the file is one of those that it has as shape files.
const ShapeLines* shapeNamed(const DatabaseCore& db, std::string_view name)
{
    for (const VcDbObjectId id : db.table(NameTable::TextStyle).records())
        if (const auto* style = db.liveAs<VcDbTextStyleTableRecord>(id); style && style->isShapeFile())
            if (const ShapeLines* lines = namedShape(style->fileUtf8(), name))
                return lines;
    return nullptr;
}

void buildShape(const VcDbEntity& e, ListBuilder& b)
{
    const auto& shape = static_cast<const VcDbShape&>(e);
    wchar_t* name = shape.name();
    const ShapeLines* lines = shapeNamed(b.db(), wideToUtf8(name));
    vcutDelString(name);
    if (!lines)
        return b.omit("SHAPE whose shape file is not at hand");
    const geom::Frame frame = geom::arbitraryFrame(shape.normal());
    const double c = std::cos(shape.rotation()), s = std::sin(shape.rotation());
    const VcGeVector3d along = frame.x * c + frame.y * s, up = frame.y * c - frame.x * s;
    const VcGeVector3d x = along * (shape.size() * shape.widthFactor()),
                       y = (up + along * std::tan(shape.oblique())) * shape.size();
    const std::uint32_t first = b.figureCount();
    for (const auto& line : *lines) {
        b.beginFigure();
        for (const VcGePoint2d& p : line)
            b.point(shape.position() + x * p.x + y * p.y);
        b.endFigure(false);
    }
    b.stroke(first, Item::Continuous);
    if (shape.thickness() != 0)
        b.extrude(first, frame.z * shape.thickness());
}

void buildKept(const VcDbEntity& e, ListBuilder& b)
{
    const std::string_view name = static_cast<const VcDbKeptEntity&>(e).keptDxfName();
    if (db::isMultiLeader(static_cast<const VcDbKeptEntity&>(e)))
        b.addPieces(e);
    else if (name == "MPOLYGON")
        buildMPolygon(e, b);
    else if (name.ends_with("UNDERLAY"))
        buildUnderlay(e, b);
    else if (!addKeptGraphics(e, b))
        b.omit(name);
}

constexpr BuildEntry kBuilders[] = {
    {&VcDbKeptEntity::desc, buildKept},
    {&VcDbLeader::desc, buildByPieces},
    {&VcDbFcf::desc, buildByPieces},
    {&VcDbShape::desc, buildShape},
};

}

std::span<const BuildEntry> annotationBuilders() { return kBuilders; }

}  // namespace vk::render
