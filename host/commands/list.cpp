// LIST: what an object is, in the words and units of the drawing.
#include "host/base/group_code.h"
#include "host/base/numbers.h"
#include "host/base/rb.h"
#include "host/base/unicode.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/commands/lineweights.h"
#include "host/db/chain.h"
#include "host/db/database.h"
#include "host/db/kept_object.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_dims.h"
#include "sdk/vcdb_faces.h"
#include "sdk/vcdb_hatch.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_text.h"
#include "sdk/vcdb_viewport.h"

namespace vk::commands {

namespace {

using namespace edit;

// Lines of "name = value" beneath the head of an object.
class Listing {
public:
    explicit Listing(Editor& ed) : m_ed(ed) {}

    Editor& editor() const { return m_ed; }
    void head(std::string_view type, std::string_view rest) { m_ed.printLine(fmt::format("{:>18}  {}", type, rest)); }
    void line(std::string_view text) { head("", text); }
    void point(std::string_view name, const VcGePoint3d& world) { pair(name, pointText(fromWorld(m_ed, world))); }
    void length(std::string_view name, double value) { pair(name, lengthText(value)); }
    void angle(std::string_view name, double radians) { pair(name, angleText(radians)); }
    void number(std::string_view name, double value) { pair(name, realText(value)); }
    void pair(std::string_view name, std::string_view value) { m_ed.printLine(fmt::format("{:>18}  {}", name, value)); }
    void style(VcDbObjectId style) { pair("style", fmt::format("\"{}\"", recordName(style))); }
    std::string recordName(VcDbObjectId id) const
    {
        const auto* record = m_ed.db().objectAs<VcDbSymbolTableRecord>(id);
        return record ? record->nameUtf8() : std::string();
    }

private:
    Editor& m_ed;
};

void describe(Listing& l, const VcDbLine& line)
{
    const VcGeVector3d d = line.endPoint() - line.startPoint();
    l.point("from point", line.startPoint());
    l.point("to point", line.endPoint());
    l.length("length", d.length());
    l.pair("delta", fmt::format("X = {}  Y = {}  Z = {}", lengthText(d.x), lengthText(d.y), lengthText(d.z)));
    l.angle("angle in XY plane", std::atan2(d.y, d.x));
}

void describe(Listing& l, const VcDbPoint& point) { l.point("at point", point.position()); }

void describe(Listing& l, const VcDbCircle& circle)
{
    l.point("center point", circle.center());
    l.length("radius", circle.radius());
    l.length("circumference", 2 * M_PI * circle.radius());
    l.length("area", M_PI * circle.radius() * circle.radius());
}

void describe(Listing& l, const VcDbArc& arc)
{
    l.point("center point", arc.center());
    l.length("radius", arc.radius());
    l.angle("start angle", arc.startAngle());
    l.angle("end angle", arc.endAngle());
    l.length("length", arc.radius() * arc.totalAngle());
}

void describe(Listing& l, const VcDbEllipse& ellipse)
{
    l.point("center point", ellipse.center());
    l.length("major radius", ellipse.majorAxis().length());
    l.length("minor radius", ellipse.minorAxis().length());
    l.angle("start angle", ellipse.startAngle());
    l.angle("end angle", ellipse.endAngle());
}

void describe(Listing& l, const VcDbUnboundedLine& line)
{
    l.point("base point", line.basePoint());
    l.angle("angle in XY plane", std::atan2(line.unitDir().y, line.unitDir().x));
}

// How long a curve is, and what it encloses.
void measures(Listing& l, const VcDbCurve& curve)
{
    double end = 0, length = 0, area = 0;
    if (curve.getEndParam(end) == Vcad::eOk && curve.getDistAtParam(end, length) == Vcad::eOk)
        l.length(curve.isClosed() ? "perimeter" : "length", length);
    if (curve.isClosed() && curve.getArea(area) == Vcad::eOk)
        l.length("area", area);
}

void describe(Listing& l, const VcDbPolyline& polyline)
{
    l.line(polyline.isClosed() ? "Closed" : "Open");
    if (double width = 0; polyline.getConstantWidth(width) == Vcad::eOk && width != 0)
        l.length("constant width", width);
    for (unsigned i = 0; i < polyline.numVerts(); ++i) {
        VcGePoint3d at;
        double bulge = 0, start = 0, end = 0;
        polyline.getPointAt(i, at);
        l.point("at point", at);
        if (polyline.getWidthsAt(i, start, end) == Vcad::eOk && (start != 0 || end != 0) && polyline.hasWidth())
            l.pair("widths", fmt::format("{} to {}", lengthText(start), lengthText(end)));
        if (polyline.getBulgeAt(i, bulge) == Vcad::eOk && bulge != 0)
            l.number("bulge", bulge);
    }
    measures(l, polyline);
}

void describe(Listing& l, const VcDbVertexOwner& polyline)
{
    const auto* flat = VcDb2dPolyline::cast(&polyline);
    l.line(polyline.isClosed() ? "Closed" : "Open");
    for (const VcDbEntity* part : polyline.vertices())
        if (const auto* vertex = VcDbVertex::cast(part); vertex && !VcDbFaceRecord::cast(part)) {
            const auto* flatVertex = VcDb2dVertex::cast(part);
            l.point("at point", flat && flatVertex ? flat->vertexPosition(*flatVertex) : vertex->position());
            if (flatVertex && flatVertex->bulge() != 0)
                l.number("bulge", flatVertex->bulge());
        }
    measures(l, polyline);
}

void describe(Listing& l, const VcDbFilledQuad& quad)
{
    VcGePoint3d p;
    for (unsigned corner = 0; corner < 4 && quad.getPointAt(corner, p) == Vcad::eOk; ++corner)
        l.point("corner", p);
}

void describe(Listing& l, const VcDbFace& face)
{
    VcGePoint3d p;
    for (unsigned corner = 0; corner < 4 && face.getVertexAt(corner, p) == Vcad::eOk; ++corner) {
        bool visible = true;
        face.isEdgeVisibleAt(corner, visible);
        l.pair("corner", pointText(fromWorld(l.editor(), p)) + (visible ? "" : "  (invisible edge)"));
    }
}

void describe(Listing& l, const VcDbHatch& hatch)
{
    if (hatch.isGradient())
        l.pair("hatch", "gradient");
    else
        l.pair("hatch pattern", hatch.patternNameUtf8());
    if (!hatch.isSolidFill() && !hatch.isGradient()) {
        l.number("scale", hatch.patternScale());
        l.angle("angle", hatch.patternAngle());
    }
    l.line(hatch.associative() ? "Associative" : "Not associative");
    l.number("boundaries", hatch.numLoops());
}

void describe(Listing& l, const VcDbLeader& leader)
{
    l.style(leader.dimensionStyle());
    for (int i = 0; i < leader.numVertices(); ++i)
        l.point("vertex", leader.vertexAt(i));
}

void describe(Listing& l, const VcDbViewport& viewport)
{
    l.number("number", viewport.number());
    l.line(viewport.isOn() ? "On" : "Off");
    l.point("center point", viewport.centerPoint());
    l.length("width", viewport.width());
    l.length("height", viewport.height());
    l.number("scale", viewport.customScale());
}

void describe(Listing& l, const VcDbSpline& spline)
{
    l.number("degree", spline.degree());
    for (const VcGePoint3d& p : spline.controlPoints())
        l.point("control point", p);
    for (const VcGePoint3d& p : spline.fitPoints())
        l.point("fit point", p);
    measures(l, spline);
}

void describe(Listing& l, const VcDbText& text)
{
    if (const auto* attribute = VcDbAttribute::cast(&text))
        l.pair("tag", attribute->tagUtf8());
    if (const auto* definition = VcDbAttributeDefinition::cast(&text))
        l.pair("tag", definition->tagUtf8());
    l.pair("text", text.textUtf8());
    l.style(text.textStyle());
    l.point("start point", text.position());
    if (!text.isDefaultAlignment())
        l.point("alignment point", text.alignmentPoint());
    l.length("height", text.height());
    l.angle("rotation angle", text.rotation());
    l.number("width factor", text.widthFactor());
    l.angle("obliquing angle", text.oblique());
    l.pair("generation", text.isMirroredInX() && text.isMirroredInY() ? "backwards, upside down"
                         : text.isMirroredInX()                       ? "backwards"
                         : text.isMirroredInY()                       ? "upside down"
                                                                      : "normal");
}

void describe(Listing& l, const VcDbMText& text)
{
    l.point("location", text.location());
    l.length("width", text.width());
    l.length("text height", text.textHeight());
    l.angle("rotation angle", text.rotation());
    l.style(text.textStyle());
    l.pair("contents", text.contentsUtf8());
}

void describe(Listing& l, const VcDbBlockReference& reference)
{
    l.pair("block", fmt::format("\"{}\"", l.recordName(reference.blockTableRecord())));
    l.point("at point", reference.position());
    const VcGeScale3d s = reference.scaleFactors();
    l.pair("scale factors", fmt::format("X = {}  Y = {}  Z = {}", realText(s.sx), realText(s.sy), realText(s.sz)));
    l.angle("rotation angle", reference.rotation());
    for (VcDbEntity* each : reference.attributes())
        if (const auto* attribute = VcDbAttribute::cast(each))
            l.pair(attribute->tagUtf8(), attribute->textUtf8());
}

void describe(Listing& l, const VcDbDimension& dimension)
{
    l.style(dimension.dimensionStyle());
    l.pair("text", dimension.dimensionTextUtf8().empty() ? "<>" : dimension.dimensionTextUtf8());
    l.point("text position", dimension.textPosition());
    if (VcDb2LineAngularDimension::cast(&dimension) || VcDb3PointAngularDimension::cast(&dimension))
        l.angle("measurement", dimension.measurement());
    else
        l.length("measurement", dimension.measurement());
}

std::string valueText(const resbuf& node)
{
    switch (groupKind(node.restype)) {
    case GroupKind::Point:
        return fmt::format("({} {} {})", lengthText(node.resval.rpoint[0]), lengthText(node.resval.rpoint[1]),
                           lengthText(node.resval.rpoint[2]));
    case GroupKind::Real:
        return realText(rbReal(node));
    case GroupKind::String:
    case GroupKind::Handle:
        return rbUtf8(node);
    case GroupKind::Reference: {
        VcDbObjectId id;
        return nameToId(node.resval.rlname, id) ? handleText(id.handle().value()) : "0";
    }
    case GroupKind::Binary:
        return fmt::format("{} bytes", rbBytes(node).size());
    default:
        return std::to_string(rbInteger(node));
    }
}

// Of the rarer classes: the groups of their own as the drawing holds them.
void describeGroups(Listing& l, VcDbEntity& entity)
{
    const RbPtr chain = chainOf(entity);
    bool own = false;
    for (const resbuf* node = chain.get(); node; node = node->rbnext) {
        if (node->restype == 100)
            own = rbUtf8(*node) != "AcDbEntity";
        else if (own)
            l.pair(std::to_string(node->restype), valueText(*node));
    }
}

template <class T>
bool describeAs(Listing& l, const VcDbEntity& entity)
{
    const T* object = T::cast(&entity);
    if (object)
        describe(l, *object);
    return object != nullptr;
}

void describeOwn(Listing& l, VcDbEntity& entity)
{
    using Describe = bool (*)(Listing&, const VcDbEntity&);
    static constexpr Describe kDescribers[] = {
        describeAs<VcDbLine>,       describeAs<VcDbPoint>,          describeAs<VcDbCircle>,
        describeAs<VcDbArc>,        describeAs<VcDbEllipse>,        describeAs<VcDbUnboundedLine>,
        describeAs<VcDbPolyline>,   describeAs<VcDbSpline>,         describeAs<VcDbText>,
        describeAs<VcDbMText>,      describeAs<VcDbBlockReference>, describeAs<VcDbDimension>,
        describeAs<VcDb2dPolyline>, describeAs<VcDb3dPolyline>,     describeAs<VcDbFilledQuad>,
        describeAs<VcDbFace>,       describeAs<VcDbHatch>,          describeAs<VcDbLeader>,
        describeAs<VcDbViewport>,
    };
    for (const Describe describe : kDescribers)
        if (describe(l, entity))
            return;
    describeGroups(l, entity);
}

// What differs from the layer is worth a line.
void describeProperties(Listing& l, const VcDbEntity& entity)
{
    if (entity.colorIndex() != 256)
        l.pair("color", entity.color().isByColor() ? "true color" : std::to_string(entity.colorIndex()));
    if (const std::string name = l.recordName(entity.linetypeId()); !name.empty() && !equalNoCase(name, "ByLayer"))
        l.pair("linetype", name);
    if (entity.lineWeight() != VcDb::kLnWtByLayer)
        l.pair("lineweight", lineWeightText(entity.lineWeight()));
}

void listEntity(Listing& l, VcDbEntity& entity)
{
    Editor& ed = l.editor();
    const auto* space = ed.db().objectAs<VcDbBlockTableRecord>(entity.ownerId());
    l.head(dxfNameOf(entity), fmt::format("Layer: \"{}\"", layerName(entity)));
    l.line(
        fmt::format("Space: {}", space && space->objectId() == ed.db().modelSpace() ? "Model space" : "Paper space"));
    l.line(fmt::format("Handle = {}", handleText(entity.handle().value())));
    describeProperties(l, entity);
    describeOwn(l, entity);
}

void list(Editor& ed)
{
    const auto objects = ed.select({.allowLocked = true});
    Listing listing(ed);
    for (const VcDbObjectId id : objects->ids()) {
        ed.throwIfInterrupted();
        if (auto* entity = ed.db().liveAs<VcDbEntity>(id))
            listEntity(listing, *entity);
    }
}

const HostCommand kCommands[] = {
    {"LIST", "LI", kUsesPickSet | kNoUndoStep, "Shows what the drawing holds of objects.", list},
};

}

std::span<const HostCommand> listCommands() { return kCommands; }

}
