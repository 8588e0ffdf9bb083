// Leaders, feature control frames, shapes.
#include "host/db/kept_object.h"
#include "host/render/build_parts.h"
#include "sdk/vcdb_dims.h"
#include "sdk/vcdb_insert.h"

namespace vk::render {

namespace {

// Leaders and frames are drawn as what they explode into, so that they look alike before and after.
void buildByPieces(const VcDbEntity& e, ListBuilder& b)
{
    if (!b.addPieces(e))
        b.omit(dxfNameOf(e));
}

// Figures of shape files that are not at hand.
void buildShape(const VcDbEntity&, ListBuilder& b) { b.omit("SHAPE whose shape file is not at hand"); }

void buildKept(const VcDbEntity& e, ListBuilder& b)
{
    const std::string_view name = static_cast<const VcDbKeptEntity&>(e).keptDxfName();
    if (name == "MULTILEADER" || name == "MLEADER")
        buildMultiLeader(e, b);
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
