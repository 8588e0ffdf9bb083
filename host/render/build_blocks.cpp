// References to blocks with their attributes, tables, and dimensions, which are drawn by a block of their own.
#include "host/db/database.h"
#include "host/db/dim_picture.h"
#include "host/db/extras.h"
#include "host/db/kept_object.h"
#include "host/io/external_reference.h"
#include "host/render/build_parts.h"
#include "sdk/vcdb_dims.h"
#include "sdk/vcdb_misc.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_text.h"

namespace vk::render {

namespace {

// What a clipped reference says: a boundary in a plane of its own, and the matrices that lead there.
struct SpatialFilter {
    std::vector<VcGePoint2d> boundary;
    std::vector<double> matrices;  // from the world to the block when it was clipped; from the world to the boundary
    bool on = true;

    explicit SpatialFilter(const ObjectExtras& extras)
    {
        for (const UnclaimedGroups& groups : extras.unclaimed)
            for (const Tag& tag : groups.tags)
                take(tag);
    }

private:
    void take(const Tag& tag)
    {
        if (tag.form == Tag::Form::Real && tag.code == 10)
            boundary.emplace_back(tag.real, 0);
        else if (tag.form == Tag::Form::Real && tag.code == 20 && !boundary.empty())
            boundary.back().y = tag.real;
        else if (tag.form == Tag::Form::Real && tag.code == 40)
            matrices.push_back(tag.real);
        else if (tag.form == Tag::Form::Integer && tag.code == 71)
            on = tag.integer != 0;
    }
};

// Three rows of four.
VcGeMatrix3d matrixOf(const double* v)
{
    VcGeMatrix3d m;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 4; ++column)
            m.entry[row][column] = v[row * 4 + column];
    return m;
}

const VcDbKeptObject* filterOf(const DatabaseCore& db, const VcDbEntity& reference)
{
    const auto* own = db.liveAs<VcDbDictionary>(reference.extensionDictionary());
    const auto* filters = own ? db.liveAs<VcDbDictionary>(own->find("ACAD_FILTER")) : nullptr;
    return filters ? db.liveAs<VcDbKeptObject>(filters->find("SPATIAL")) : nullptr;
}

// What lies inside is left out where the filter has a record beside it with the boundary that was drawn. The filter itself
// then has a boundary around all of it for programs that do not know such clips; the record repeats it, so that a filter
// which has changed since then counts by itself.
std::optional<std::vector<VcGePoint2d>> invertedBoundary(const DatabaseCore& db, const VcDbKeptObject& object,
                                                         const std::vector<VcGePoint2d>& boundary)
{
    const auto* own = db.liveAs<VcDbDictionary>(object.extensionDictionary());
    if (!own)
        return std::nullopt;
    std::vector<VcGePoint2d> drawn, around;
    for (const auto& [name, id] : own->liveEntries()) {
        const auto* record = db.liveAs<VcDbXrecord>(id);
        if (!record)
            continue;
        std::vector<VcGePoint2d>* list = nullptr;
        for (const Tag& tag : record->data()) {
            if (tag.code == 102 && tag.form == Tag::Form::Utf8)
                list = tag.view() == "ACAD_INVERTEDCLIP_ROUNDTRIP"           ? &drawn
                       : tag.view() == "ACAD_INVERTEDCLIP_ROUNDTRIP_COMPARE" ? &around
                                                                             : nullptr;
            else if (list && tag.code == 10 && tag.form == Tag::Form::Real)
                list->emplace_back(tag.real, 0);
            else if (list && !list->empty() && tag.code == 20 && tag.form == Tag::Form::Real)
                list->back().y = tag.real;
        }
    }
    if (drawn.size() < 2 || around != boundary)
        return std::nullopt;
    return drawn;
}

std::int32_t addClip(ListBuilder& b, const VcDbEntity& reference)
{
    const VcDbKeptObject* object = filterOf(b.db(), reference);
    if (!object || !object->extras())
        return -1;
    SpatialFilter filter(*object->extras());
    // The front clip distance, where there is one, stands under the same code before the matrices.
    if (!filter.on || filter.boundary.size() < 2 || filter.matrices.size() < 24)
        return -1;
    const double* matrices = filter.matrices.data() + (filter.matrices.size() - 24);
    ClipFrame clip;
    if (auto inverted = invertedBoundary(b.db(), *object, filter.boundary)) {
        filter.boundary = std::move(*inverted);
        clip.inverted = true;
    }
    if (filter.boundary.size() == 2) {
        const VcGePoint2d a = filter.boundary[0], c = filter.boundary[1];
        filter.boundary = {a, {c.x, a.y}, c, {a.x, c.y}};
    }
    clip.toClip = matrixOf(matrices + 12) * matrixOf(matrices).inverse();
    clip.corners = std::move(filter.boundary);
    b.list().clips.push_back(std::move(clip));
    return std::int32_t(b.list().clips.size() - 1);
}

// The axes of a reference, along which a grid of it runs.
std::pair<VcGeVector3d, VcGeVector3d> gridAxes(const VcDbBlockReference& reference)
{
    const geom::Frame frame = geom::arbitraryFrame(reference.normal());
    const double c = std::cos(reference.rotation()), s = std::sin(reference.rotation());
    return {frame.x * c + frame.y * s, frame.y * c - frame.x * s};
}

void tellMissing(ListBuilder& b, const VcDbBlockReference& reference)
{
    const auto* block = b.db().liveAs<VcDbBlockTableRecord>(reference.blockTableRecord());
    if (!block)
        b.omit("INSERT without a block");
    // One that is loaded may have nothing to show: an empty model, or nothing but what lies over it.
    else if (block->isFromExternalReference() && block->memberSlots().empty() && !isLoaded(b.db(), *block))
        b.omit("external reference that is not loaded");
}

void buildReference(const VcDbEntity& e, ListBuilder& b)
{
    const auto& reference = static_cast<const VcDbBlockReference&>(e);
    tellMissing(b, reference);
    BlockUse use;
    use.block = reference.blockTableRecord();
    use.matrix = reference.blockTransform();
    if (const auto* grid = VcDbMInsertBlock::cast(&e)) {
        const auto [x, y] = gridAxes(reference);
        use.columns = std::max<std::uint32_t>(grid->columns(), 1);
        use.rows = std::max<std::uint32_t>(grid->rows(), 1);
        use.columnStep = x * grid->columnSpacing();
        use.rowStep = y * grid->rowSpacing();
    }
    use.clip = addClip(b, e);
    b.use(std::move(use));
    for (const VcDbEntity* attribute : reference.attributes())
        b.add(*attribute);
}

// A file may leave it to its reader to draw the dimension.
void addDimensionPicture(ListBuilder& b, const VcDbDimension& dimension)
{
    const dim::Picture picture = dim::pictureOf(dimension);
    if (picture.pieces.empty())
        b.omit("DIMENSION without its block");
    for (const auto& piece : picture.pieces) {
        dim::inheritFrom(*piece, dimension);
        b.add(*piece);
    }
}

void buildDimension(const VcDbEntity& e, ListBuilder& b)
{
    const auto& dimension = static_cast<const VcDbDimension&>(e);
    if (!b.db().liveAs<VcDbBlockTableRecord>(dimension.dimBlockId()))
        return addDimensionPicture(b, dimension);
    BlockUse use;
    use.block = dimension.dimBlockId();
    b.use(std::move(use));
}

constexpr BuildEntry kBuilders[] = {
    {&VcDbBlockReference::desc, buildReference},
    {&VcDbDimension::desc, buildDimension},
};

}

std::span<const BuildEntry> blockBuilders() { return kBuilders; }

}  // namespace vk::render
