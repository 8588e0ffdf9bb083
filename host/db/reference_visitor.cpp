#include "host/db/reference_visitor.h"

#include "host/db/database.h"
#include "host/db/extras.h"

std::optional<RefKind> refKindOfCode(int code)
{
    if ((code >= 320 && code <= 339) || code == 1005)
        return RefKind::SoftPointer;
    if ((code >= 340 && code <= 349) || (code >= 390 && code <= 399) || (code >= 480 && code <= 489))
        return RefKind::HardPointer;
    if (code >= 350 && code <= 359)
        return RefKind::SoftOwner;
    if (code >= 360 && code <= 369)
        return RefKind::HardOwner;
    return std::nullopt;
}

void ReferenceVisitor::ref(int, RefKind kind, VcDbObjectId& id)
{
    if (id.isNull())
        return;
    const VcDbObjectId other = visit(id, kind);
    if (other != id)
        id = other;
}

void ReferenceVisitor::tags(TagList& list)
{
    DatabaseCore* db = m_handleSpace ? m_handleSpace : m_object ? DatabaseCore::of(m_object->objectId()) : nullptr;
    if (!db || list.empty())
        return;
    list.mapHandles([&](int code, std::uint64_t handle) -> std::uint64_t {
        const auto kind = refKindOfCode(code);
        const VcDbObjectId id = kind && handle ? db->findHandle(handle) : VcDbObjectId();
        if (id.isNull())
            return handle;
        const VcDbObjectId other = visit(id, *kind);
        return other == id ? handle : other.handle().value();
    });
}

void ReferenceVisitor::visitAll(VcDbObject& object)
{
    m_object = &object;
    object.fields(*this);
    ObjectExtras* extras = object.extras();
    if (!extras)
        return;
    for (VcDbObjectId& id : extras->reactors)
        ref(330, RefKind::SoftPointer, id);
    ref(360, RefKind::HardOwner, extras->extensionDictionary);
    tags(extras->xdata);
    for (ApplicationGroup& group : extras->applicationGroups)
        tags(group.tags);
    for (UnclaimedGroups& groups : extras->unclaimed)
        tags(groups.tags);
}
