#include "host/db/ent_insert.h"

#include "host/db/database.h"
#include "host/db/ent_util.h"
#include "host/db/extras.h"
#include "host/db/kept_extents.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_text.h"

#include <algorithm>

namespace {

const VcDbBlockTableRecord* blockOf(VcDbObjectId id)
{
    const DatabaseCore* db = DatabaseCore::of(id);
    return db ? db->liveAs<VcDbBlockTableRecord>(id) : nullptr;
}

template <class Each>
void forEachMember(VcDbObjectId block, Each&& each)
{
    const VcDbBlockTableRecord* record = blockOf(block);
    const DatabaseCore* db = DatabaseCore::of(block);
    if (!record)
        return;
    for (const std::uint32_t slot : record->memberSlots())
        if (const VcDbObject* member = db->objectAt(slot); member && !member->isErased())
            if (const auto* entity = VcDbEntity::cast(member))
                each(*entity);
}

bool keepsBoxes(const VcGeMatrix3d& m)
{
    // Each axis goes to one axis: a box stays a box.
    for (const auto& row : {m.entry[0], m.entry[1], m.entry[2]}) {
        const double largest = std::max({std::fabs(row[0]), std::fabs(row[1]), std::fabs(row[2])});
        int big = 0;
        for (int column = 0; column < 3; ++column)
            big += std::fabs(row[column]) > 1e-12 * largest;
        if (big != 1)
            return false;
    }
    return true;
}

}

std::unique_ptr<VcDbEntity> looseCopy(const VcDbEntity& entity)
{
    std::unique_ptr<VcDbEntity> copy(static_cast<VcDbEntity*>(entity.copyOf().release()));
    copy->carryProps(entity.props());
    copy->detach();
    if (ObjectExtras* extras = copy->extras()) {
        extras->extensionDictionary = {};
        extras->reactors.clear();
    }
    VcDbObjectId none;
    if (const auto* reference = VcDbBlockReference::cast(&entity))
        for (const VcDbEntity* attribute : reference->attributes())
            static_cast<VcDbBlockReference&>(*copy).appendAttribute(
                static_cast<VcDbAttribute*>(looseCopy(*attribute).release()));
    if (const auto* polyline = VcDbVertexOwner::cast(&entity))
        for (const VcDbEntity* vertex : polyline->vertices())
            static_cast<VcDbVertexOwner&>(*copy).appendSubEntity(none, looseCopy(*vertex).release());
    return copy;
}

// Extents

static thread_local BlockExtents* s_atWork = nullptr;

namespace {

struct AtWork {
    explicit AtWork(BlockExtents* one) { s_atWork = one; }
    ~AtWork() { s_atWork = nullptr; }
};

}

void BlockExtents::addReference(VcDbExtents& extents, const VcDbBlockReference& reference, const VcGeMatrix3d& outer)
{
    const VcGeMatrix3d m = outer * reference.blockTransform();
    if (s_atWork)
        return s_atWork->addBlock(extents, reference.blockTableRecord(), m);
    const AtWork atWork(this);
    const VcDbObjectId block = reference.blockTableRecord();
    if (!keepsBoxes(m))
        return addMembers(extents, block, m);
    VcDbExtents box;
    keptExtents(block, box, [&] { return ofBlock(block); });
    if (!box.isEmpty())
        box.transformBy(m);
    extents.addExt(box);
}

bool BlockExtents::isAtWork() { return s_atWork != nullptr; }

void BlockExtents::addBlock(VcDbExtents& extents, VcDbObjectId block, const VcGeMatrix3d& m)
{
    VcDbExtents box = ofBlock(block);
    box.transformBy(m);
    extents.addExt(box);
}

const VcDbExtents& BlockExtents::ofBlock(VcDbObjectId block)
{
    if (const auto known = m_boxes.find(block); known != m_boxes.end())
        return known->second;
    // The empty box stands until it is known, so that a block within itself adds nothing.
    m_boxes.emplace(block, VcDbExtents());
    VcDbExtents box;
    addMembers(box, block, VcGeMatrix3d());
    return m_boxes[block] = box;
}

void BlockExtents::addNested(VcDbExtents& extents, const VcDbBlockReference& nested, const VcGeMatrix3d& m)
{
    addBlock(extents, nested.blockTableRecord(), m * nested.blockTransform());
    for (const VcDbEntity* attribute : nested.attributes())
        if (VcDbExtents one; attribute->getGeomExtents(one) == Vcad::eOk) {
            one.transformBy(m);
            extents.addExt(one);
        }
}

void BlockExtents::addMembers(VcDbExtents& extents, VcDbObjectId block, const VcGeMatrix3d& m)
{
    const bool boxStays = keepsBoxes(m);
    forEachMember(block, [&](const VcDbEntity& member) {
        if (member.isKindOf(VcDbAttributeDefinition::desc()) &&
            !static_cast<const VcDbAttributeDefinition&>(member).isConstant())
            return;
        VcDbExtents one;
        if (const auto* nested = VcDbBlockReference::cast(&member))
            return addNested(extents, *nested, m);
        if (!boxStays)
            if (const auto copy = looseCopy(member);
                copy->transformBy(m) == Vcad::eOk && copy->getGeomExtents(one) == Vcad::eOk) {
                extents.addExt(one);
                return;
            }
        if (member.getGeomExtents(one) == Vcad::eOk) {
            one.transformBy(m);
            extents.addExt(one);
        }
    });
}

// Exploding

namespace {

constexpr int kDeepest = 32;
constexpr std::size_t kMostPieces = 4'000'000;

using Pieces = std::vector<std::unique_ptr<VcDbEntity>>;

// An ellipse for a circle or an arc that an uneven scale makes one.
std::unique_ptr<VcDbEntity> asEllipse(const VcDbEntity& round, const VcGeMatrix3d& m)
{
    auto ellipse = std::make_unique<VcDbEllipse>();
    const auto* circle = VcDbCircle::cast(&round);
    const auto* arc = VcDbArc::cast(&round);
    if (!circle && !arc)
        return nullptr;
    if ((circle ? ellipse->setFromCircle(*circle, m) : ellipse->setFromArc(*arc, m)) != Vcad::eOk)
        return nullptr;
    ellipse->setPropertiesFrom(&round);
    return ellipse;
}

// The entity moved, or simpler entities that look like it moved. False when neither can be had.
bool addMoved(std::unique_ptr<VcDbEntity> entity, const VcGeMatrix3d& m, Pieces& pieces, int depth)
{
    if (entity->transformBy(m) == Vcad::eOk) {
        pieces.push_back(std::move(entity));
        return true;
    }
    if (auto ellipse = asEllipse(*entity, m)) {
        pieces.push_back(std::move(ellipse));
        return true;
    }
    std::vector<VcDbEntity*> parts;
    if (depth == 0 || entity->explode(parts) != Vcad::eOk)
        return false;
    Pieces owned(parts.begin(), parts.end());
    bool all = pieces.size() + owned.size() <= kMostPieces;
    for (std::unique_ptr<VcDbEntity>& part : owned)
        all = all && addMoved(std::move(part), m, pieces, depth - 1);
    return all;
}

// The blocks whose members are being exploded, outermost first: one that turns up again holds itself and has no end.
class BlockAtWork {
public:
    explicit BlockAtWork(VcDbObjectId block)
        : m_isNested(std::find(s_blocks.begin(), s_blocks.end(), block) != s_blocks.end())
    {
        s_blocks.push_back(block);
    }
    ~BlockAtWork() { s_blocks.pop_back(); }
    BlockAtWork(const BlockAtWork&) = delete;
    BlockAtWork& operator=(const BlockAtWork&) = delete;
    bool isWithinItself() const { return m_isNested; }
    bool isTooDeep() const { return s_blocks.size() > std::size_t(kDeepest); }

private:
    static thread_local std::vector<VcDbObjectId> s_blocks;
    bool m_isNested;
};

thread_local std::vector<VcDbObjectId> BlockAtWork::s_blocks;

}

Vcad::ErrorStatus explodeReference(const VcDbBlockReference& reference, std::vector<VcDbEntity*>& pieces)
{
    const BlockAtWork atWork(reference.blockTableRecord());
    if (atWork.isWithinItself() || atWork.isTooDeep())
        return Vcad::eCannotExplode;
    const VcDbBlockTableRecord* record = blockOf(reference.blockTableRecord());
    if (!record || !record->explodable() || record->isFromExternalReference())
        return Vcad::eCannotExplode;
    const VcGeMatrix3d m = reference.blockTransform();
    if (!planeMove(m, VcGeVector3d::zAxis()))
        return Vcad::eCannotExplode;
    Pieces made;
    bool all = true;
    forEachMember(reference.blockTableRecord(),
                  [&](const VcDbEntity& member) { all = all && addMoved(looseCopy(member), m, made, kDeepest); });
    if (!all)
        return Vcad::eCannotScaleNonUniformly;
    for (std::unique_ptr<VcDbEntity>& piece : made)
        pieces.push_back(piece.release());
    return Vcad::eOk;
}
