#include "host/db/solid_model.h"

#include "host/base/numbers.h"
#include "host/db/curve_of.h"
#include "host/db/database.h"
#include "host/db/ent_util.h"
#include "host/db/extras.h"
#include "host/db/model_section.h"
#include "host/geom/curve_edit.h"
#include "host/geom/model_edit.h"
#include "host/geom/model_records.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_solids.h"

using namespace vk::geom;

VcDbModelerGeometry::VcDbModelerGeometry() = default;
VcDbModelerGeometry::~VcDbModelerGeometry() = default;

namespace {

constexpr std::string_view kMarker = "AcDbModelerGeometry";

bool isLineOfText(int code) { return code == 1 || code == 3; }

// The lines of the text form are unclaimed groups: 1 begins a line, 3 goes on with it.
const UnclaimedGroups* textGroups(const VcDbObject& solid)
{
    if (const ObjectExtras* extras = solid.extras())
        for (const UnclaimedGroups& groups : extras->unclaimed)
            if (groups.subclass == kMarker)
                for (const Tag& tag : groups.tags)
                    if (isLineOfText(tag.code) && tag.form == Tag::Form::Utf8)
                        return &groups;
    return nullptr;
}

std::string linesOf(const TagList& tags)
{
    std::string text;
    for (const Tag& tag : tags)
        if (isLineOfText(tag.code) && tag.form == Tag::Form::Utf8) {
            if (tag.code == 1 && !text.empty())
                text += '\n';
            text += tag.view();
        }
    return text;
}

// Lines are cut where files cut them.
void addLine(TagList& tags, std::string_view line)
{
    constexpr std::size_t kLongest = 255;
    tags.addText(1, line.substr(0, kLongest));
    for (std::size_t at = kLongest; at < line.size(); at += kLongest)
        tags.addText(3, line.substr(at, kLongest));
}

// The groups with other lines in the place of the old; everything else stays where it was.
TagList withLines(const TagList& old, std::string_view text)
{
    TagList tags;
    bool done = false;
    for (const Tag& tag : old) {
        if (!isLineOfText(tag.code) || tag.form != Tag::Form::Utf8) {
            tags.add(tag);
            continue;
        }
        for (; !done && !text.empty(); text.remove_prefix(std::min(text.size(), text.find('\n') + 1))) {
            addLine(tags, text.substr(0, text.find('\n')));
            if (text.find('\n') == std::string_view::npos)
                break;
        }
        done = true;
    }
    return tags;
}

ModelData binaryData(const VcDbModelerGeometry& solid)
{
    if (solid.ownModelData())
        return solid.ownModelData();
    const DatabaseCore* db = DatabaseCore::of(solid.objectId());
    return db && !textGroups(solid) ? sectionModelData(*db, db->handleOf(solid.objectId())) : nullptr;
}

}

// The copy is to be an object of its own, whose handle the section does not know.
VcDbModelerGeometry::VcDbModelerGeometry(const VcDbModelerGeometry& other)
    : VcDbEntity(other), m_model(other.m_model), m_ownData(binaryData(other))
{
}

VcDbModelerGeometry& VcDbModelerGeometry::operator=(const VcDbModelerGeometry& other)
{
    VcDbEntity::operator=(other);
    m_model = other.m_model;
    m_ownData = binaryData(other);
    return *this;
}

void VcDbModelerGeometry::fieldsChanged() { m_model.reset(); }
void VcDbModelerGeometry::dropCaches() { m_model.reset(); }

bool VcDbModelerGeometry::hasModelText() const { return textGroups(*this) != nullptr; }

std::string VcDbModelerGeometry::modelData() const
{
    if (const UnclaimedGroups* groups = textGroups(*this))
        return modelTextExchanged(linesOf(groups->tags));
    const ModelData data = binaryData(*this);
    return data ? *data : std::string();
}

void VcDbModelerGeometry::setModelData(std::string data)
{
    m_model.reset();
    if (isBinaryModel(data)) {
        m_ownData = std::make_shared<const std::string>(std::move(data));
        return;
    }
    auto& groups = const_cast<UnclaimedGroups&>(*textGroups(*this));
    groups.tags = withLines(groups.tags, modelTextExchanged(data));
}

namespace {

// The picture of the entity that other programs have left with it, for those that do not know its class.
void dropKeptPicture(VcDbObject& solid)
{
    const auto isPicture = [](const Tag& tag) { return tag.code == 92 || tag.code == 160 || tag.code == 310; };
    if (ObjectExtras* extras = solid.extras())
        for (UnclaimedGroups& groups : extras->unclaimed) {
            if (groups.subclass != "AcDbEntity")
                continue;
            TagList rest;
            for (const Tag& tag : groups.tags)
                if (!isPicture(tag))
                    rest.add(tag);
            groups.tags = std::move(rest);
        }
}

}

namespace {

Box3d boxOf(const std::vector<Curve>& curves)
{
    Box3d box;
    for (const Curve& c : curves)
        box.add(extents(c));
    return box;
}

// Spheres, tori and tips of cones reach beyond edges: lines are so dense that no more than a thousandth of the radius is missed.
Box3d boxOfRoundFaces(const ModelShape& shape)
{
    constexpr int kLines = 64;
    const bool any = std::any_of(shape.faces.begin(), shape.faces.end(), [](const ModelFace& f) {
        const auto* cone = std::get_if<ConeSurface>(&f.surface);
        return (cone && cone->slope != 0) || std::holds_alternative<SphereSurface>(f.surface) ||
               std::holds_alternative<TorusSurface>(f.surface);
    });
    return any ? boxOf(isolines(shape, kLines)) : Box3d();
}

}

const SolidModel& VcDbModelerGeometry::model() const
{
    if (m_model)
        return *m_model;
    auto model = std::make_shared<SolidModel>();
    model->shape = readModelShape(ModelRecords(modelData()));
    model->box = boxOf(model->shape.edges);
    model->box.add(boxOfRoundFaces(model->shape));
    m_model = model;
    return *m_model;
}

Vcad::ErrorStatus VcDbModelerGeometry::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    const Box3d& box = model().box;
    if (!box.isFinite())
        return Vcad::eNotApplicable;
    extents = VcDbExtents(box.min, box.max);
    return Vcad::eOk;
}

namespace {

// Such surfaces keep what they were made from beside their shape, in the coordinates of then, and it could not follow.
bool keepsItsProfile(const VcDbEntity& solid)
{
    return solid.isKindOf(VcDbExtrudedSurface::desc()) || solid.isKindOf(VcDbLoftedSurface::desc()) ||
           solid.isKindOf(VcDbRevolvedSurface::desc()) || solid.isKindOf(VcDbSweptSurface::desc());
}

}

Vcad::ErrorStatus VcDbModelerGeometry::transformBy(const VcGeMatrix3d& m)
{
    if (keepsItsProfile(*this))
        return Vcad::eNotApplicable;
    if (m.isSingular())
        return Vcad::eInvalidInput;
    if (!m.isUniScaledOrtho())
        return Vcad::eCannotScaleNonUniformly;
    auto moved = transformedModel(ModelRecords(modelData()), m);
    if (!moved)
        return Vcad::eNotApplicable;
    assertWriteEnabled();
    setModelData(std::move(*moved));
    dropKeptPicture(*this);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbRegion::explode(std::vector<VcDbEntity*>& pieces) const
{
    const ModelShape& shape = model().shape;
    if (shape.unread > 0 || shape.edges.empty())
        return Vcad::eCannotExplode;
    std::vector<std::unique_ptr<VcDbEntity>> made;
    for (const Curve& edge : shape.edges) {
        made.push_back(makeEntityOf(edge, *this));
        if (!made.back())
            return Vcad::eCannotExplode;
        made.back()->makeExtras().xdata = {};
    }
    for (auto& piece : made)
        pieces.push_back(piece.release());
    return Vcad::eOk;
}

namespace {

int statedIsolines(const DatabaseCore* db)
{
    constexpr int kUsual = 4, kMost = 2047;
    const auto* root = db ? db->objectAs<VcDbDictionary>(db->rootDictionary()) : nullptr;
    const auto* variables = root ? db->liveAs<VcDbDictionary>(root->find("AcDbVariableDictionary")) : nullptr;
    const auto* variable = variables ? db->liveAs<VcDbDictionaryVar>(variables->find("ISOLINES")) : nullptr;
    const auto number = variable ? parseInteger(variable->valueUtf8()) : std::nullopt;
    return number ? int(std::clamp<std::int64_t>(*number, 0, kMost)) : kUsual;
}

}

const std::vector<Curve>& SolidModel::lines(int count) const
{
    if (count != m_lineCount) {
        m_lines = isolines(shape, count);
        m_lineCount = count;
    }
    return m_lines;
}

std::vector<Curve> drawnCurvesOf(const VcDbModelerGeometry& solid)
{
    const SolidModel& model = solid.model();
    std::vector<Curve> curves = model.shape.edges;
    const auto* surface = VcDbSurface::cast(&solid);
    const int count =
        surface ? std::max(surface->uIsolineDensity(), 0) : statedIsolines(DatabaseCore::of(solid.objectId()));
    const std::vector<Curve>& lines = model.lines(count);
    curves.insert(curves.end(), lines.begin(), lines.end());
    return curves;
}
