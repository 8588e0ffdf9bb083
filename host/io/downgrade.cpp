#include "host/io/downgrade.h"

#include "host/base/unicode.h"
#include "host/db/degrees.h"
#include "host/db/extras.h"
#include "host/db/kept_object.h"
#include "host/db/let_go.h"
#include "host/db/model_section.h"
#include "host/geom/curve.h"
#include "host/io/legacy_sink.h"
#include "host/io/object_writer.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_polylines.h"
#include "sdk/vcdb_solids.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_viewport.h"

#include <map>

namespace {

using Entities = std::vector<std::unique_ptr<VcDbEntity>>;

constexpr int kSegmentsOfCircle = 128;
constexpr int kSegmentsOfSpan = 16;
constexpr int kMostNesting = 8;

bool isSolidModel(std::string_view type)
{
    return type == "3DSOLID" || type == "REGION" || type == "BODY" ||
           (type.size() > 7 && type.substr(type.size() - 7) == "SURFACE");
}

// From R2013 on the data of solids stands in a section of its own that older releases do not read.
bool losesItsData(const VcDbEntity& entity, const DatabaseCore& db, DxfVersion version)
{
    if (version >= DxfVersion::R2013)
        return false;
    if (const auto* solid = VcDbModelerGeometry::cast(&entity))
        return !solid->hasModelText() && !solid->modelData().empty();
    if (db.origin.version < DxfVersion::R2013 || !isSolidModel(dxfNameOf(entity)))
        return false;
    return std::any_of(db.keptSections.begin(), db.keptSections.end(),
                       [](const KeptSection& s) { return s.name == kModelSection; });
}

std::unique_ptr<VcDbEntity> throughPoints(const std::vector<VcGePoint3d>& points, bool closed)
{
    auto polyline = std::make_unique<VcDb3dPolyline>();
    polyline->setClosed(closed);
    VcDbObjectId id;
    for (const VcGePoint3d& p : points)
        polyline->appendVertex(id, new VcDb3dPolylineVertex(p));
    return polyline;
}

std::unique_ptr<VcDbEntity> polylineOf(const VcDbPolyline& light)
{
    auto heavy = std::make_unique<VcDb2dPolyline>();
    heavy->setClosed(light.isClosed());
    heavy->setElevation(light.elevation());
    heavy->setThickness(light.thickness());
    heavy->setNormal(light.normal());
    for (unsigned i = 0; i < light.numVerts(); ++i) {
        VcGePoint2d p;
        double bulge = 0, start = 0, end = 0;
        light.getPointAt(i, p);
        light.getBulgeAt(i, bulge);
        light.getWidthsAt(i, start, end);
        VcDbObjectId id;
        heavy->appendVertex(id, new VcDb2dVertex(VcGePoint3d(p.x, p.y, light.elevation()), bulge, start, end));
    }
    return heavy;
}

std::unique_ptr<VcDbEntity> polylineOf(const VcDbEllipse& ellipse)
{
    const double sweep = ellipse.endParam() - ellipse.startParam();
    const int segments =
        std::max(2, static_cast<int>(kSegmentsOfCircle * std::min(1.0, std::fabs(sweep) / vk::geom::kTwoPi)));
    const bool closed = ellipse.isClosed();
    std::vector<VcGePoint3d> points;
    for (int i = 0; i < segments + !closed; ++i)
        points.push_back(ellipse.pointAt(ellipse.startParam() + sweep * i / segments));
    return throughPoints(points, closed);
}

std::unique_ptr<VcDbEntity> polylineOf(const VcDbSpline& spline)
{
    const vk::geom::Curve curve =
        vk::geom::Nurbs{spline.degree(), spline.controlPoints(), spline.knots(), spline.weights()};
    if (!vk::geom::isValid(curve))
        return spline.fitPoints().size() > 1 ? throughPoints(spline.fitPoints(), spline.isClosed()) : nullptr;
    const vk::geom::Interval range = vk::geom::paramRange(curve);
    const int segments = kSegmentsOfSpan * std::max(1, spline.numControlPoints() - spline.degree());
    std::vector<VcGePoint3d> points;
    for (int i = 0; i <= segments; ++i)
        points.push_back(vk::geom::pointAt(curve, range.from + (range.to - range.from) * i / segments));
    return throughPoints(points, false);
}

Entities olderForms(const VcDbEntity& entity, int depth = 0);

void addOlder(Entities& all, std::unique_ptr<VcDbEntity> piece, int depth)
{
    if (LegacySink::knows(dxfNameOf(*piece))) {
        all.push_back(std::move(piece));
        return;
    }
    for (auto& smaller : olderForms(*piece, depth + 1))
        all.push_back(std::move(smaller));
}

// Entities of R12 that look like this one; none when there are no such.
Entities olderForms(const VcDbEntity& entity, int depth)
{
    Entities all;
    std::unique_ptr<VcDbEntity> one;
    if (const auto* light = VcDbPolyline::cast(&entity))
        one = polylineOf(*light);
    else if (const auto* ellipse = VcDbEllipse::cast(&entity))
        one = polylineOf(*ellipse);
    else if (const auto* spline = VcDbSpline::cast(&entity))
        one = polylineOf(*spline);
    if (one) {
        one->setProps(entity.props());
        all.push_back(std::move(one));
        return all;
    }
    std::vector<VcDbEntity*> pieces;
    if (depth < kMostNesting && entity.explode(pieces) == Vcad::eOk)
        for (VcDbEntity* piece : pieces)
            addOlder(all, std::unique_ptr<VcDbEntity>(piece), depth);
    return all;
}

void writeWhole(VcDbEntity& entity, ObjectWriter& writer, const TagList* space)
{
    writer.write(entity, space);
    const auto* owner = VcDbVertexOwner::cast(&entity);
    if (!owner)
        return;
    for (VcDbEntity* vertex : owner->vertices()) {
        vertex->setProps(entity.props());
        writer.write(*vertex, space);
    }
    VcDbSequenceEnd end;
    end.setProps(entity.props());
    writer.write(end, space);
}

}

namespace {

bool saysItsView(const VcDbEntity& viewport)
{
    if (const ObjectExtras* extras = viewport.extras())
        for (const Tag& tag : extras->xdata)
            if (tag.code == 1000 && tag.view() == "MVIEW")
                return true;
    return false;
}

// R12 keeps the view of a viewport in extended data of its own.
void putMView(const VcDbViewport& v, GroupSink& sink)
{
    constexpr std::int64_t kVersion = 16;
    const VcGeVector3d direction = v.viewDirection();
    sink.text(1001, "ACAD");
    sink.text(1000, "MVIEW");
    sink.text(1002, "{");
    sink.integer(1070, kVersion);
    sink.point(1010, v.viewTarget());
    sink.point(1010, VcGePoint3d(direction.x, direction.y, direction.z));
    for (const double value : {degreesOfRadians(v.twistAngle()), v.viewHeight(), v.viewCenter().x, v.viewCenter().y,
                               v.lensLength(), 0.0, 0.0})
        sink.real(1040, value);
    for (const int value :
         {0, 1000, 1, 3, 0, 0, 0, 0})  // mode, circle zoom, fast zoom, icon, snap, grid, style, isopair
        sink.integer(1070, value);
    for (const double value : {0.0, 0.0, 0.0, 10.0, 10.0, 10.0, 10.0})  // snap angle and base, snap and grid spacing
        sink.real(1040, value);
    sink.integer(1070, 0);
    for (const char* brace : {"{", "}", "}"})
        sink.text(1002, brace);
}

}

Fate fateOf(const VcDbEntity& entity, const DatabaseCore& db, DxfVersion version)
{
    if (version >= DxfVersion::R13)
        return losesItsData(entity, db, version) ? Fate::Dropped : Fate::Kept;
    if (entity.isKindOf(VcDbViewport::desc()) && !saysItsView(entity))
        return Fate::Rewritten;
    if (LegacySink::knows(dxfNameOf(entity)) ||
        (db.origin.fromFile && db.origin.version < DxfVersion::R13 && entity.isKindOf(VcDbKeptEntity::desc())))
        return Fate::Kept;
    return olderForms(entity).empty() ? Fate::Dropped : Fate::Rewritten;
}

void writeOlderForm(VcDbEntity& entity, DatabaseCore& db, DxfVersion version, GroupSink& sink, const TagList* space,
                    std::uint64_t* nextHandle)
{
    if (const auto* viewport = VcDbViewport::cast(&entity)) {
        ObjectWriter(db, version, sink).write(entity, space);
        return putMView(*viewport, sink);
    }
    Entities pieces = olderForms(entity);
    if (const ObjectExtras* extras = entity.extras(); extras && !extras->xdata.empty())
        pieces.front()->makeExtras().xdata = extras->xdata;
    ObjectWriter writer(db, version, sink);
    writer.setIdentity({nextHandle != nullptr, false, nextHandle});
    for (auto& piece : pieces)
        writeWhole(*piece, writer, space);
}

bool isAbstractLinetype(const DatabaseCore& db, VcDbObjectId id)
{
    const auto* record = db.objectAs<VcDbSymbolTableRecord>(id);
    return record && (equalNoCase(record->nameUtf8(), std::string_view("ByLayer")) ||
                      equalNoCase(record->nameUtf8(), std::string_view("ByBlock")));
}

// What every drawing has of itself, and what only serves objects that are counted, is no loss.
static bool isFurniture(std::string_view type)
{
    constexpr std::string_view kTypes[] = {
        "ACDBDETAILVIEWSTYLE",
        "ACDBDICTIONARYWDFLT",
        "ACDBPLACEHOLDER",
        "ACDBSECTIONVIEWSTYLE",
        "CELLSTYLEMAP",
        "DICTIONARY",
        "DICTIONARYVAR",
        "FIELDLIST",
        "IMAGEDEF",
        "IMAGEDEF_REACTOR",
        "MATERIAL",
        "MLEADERSTYLE",
        "MLINESTYLE",
        "PLOTSETTINGS",
        "RASTERVARIABLES",
        "SCALE",
        "SORTENTSTABLE",
        "SUN",
        "TABLESTYLE",
        "VISUALSTYLE",
        "WIPEOUTVARIABLES",
    };
    return std::find(std::begin(kTypes), std::end(kTypes), type) != std::end(kTypes);
}

std::map<std::string, std::size_t> objectsWithoutPlace(const DatabaseCore& db, DxfVersion version, const LetGo& letGo)
{
    std::map<std::string, std::size_t> lost;
    if (version >= DxfVersion::R13)
        return lost;
    for (std::uint32_t slot = 1; slot < db.slotCount(); ++slot) {
        const VcDbObject* object = db.objectAt(slot);
        if (!object || object->isErased() || object->isKindOf(VcDbEntity::desc()) ||
            object->isKindOf(VcDbSymbolTable::desc()) || object->isKindOf(VcDbSymbolTableRecord::desc()) ||
            isFurniture(dxfNameOf(*object)) || letGo.contains(*object))
            continue;
        if (const auto* layout = VcDbLayout::cast(object)) {
            const auto* block = db.liveAs<VcDbBlockTableRecord>(layout->getBlockTableRecordId());
            const bool hasPlace = !block || block->objectId() == db.modelSpace() ||
                                  block->objectId() == db.paperSpace() || block->memberSlots().empty();
            if (hasPlace)
                continue;
        }
        ++lost[dxfNameOf(*object)];
    }
    return lost;
}
