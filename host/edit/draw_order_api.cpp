#include "host/db/database.h"
#include "host/db/draw_order.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vced.h"

Vcad::ErrorStatus vcedDrawOrderInherit(VcDbObjectId parent, const VcDbObjectIdArray& ids, int mode)
{
    constexpr int kAbove = 1, kBeneath = 3;
    DatabaseCore* db = DatabaseCore::of(parent);
    const auto* entity = db ? db->liveAs<VcDbEntity>(parent) : nullptr;
    if (!entity || (mode != kAbove && mode != kBeneath))
        return Vcad::eInvalidInput;
    if (ids.empty())
        return Vcad::eOk;
    VcDbSortentsTable* order = drawOrderOf(*db, entity->ownerId());
    if (!order)
        return Vcad::eInvalidInput;
    return mode == kBeneath ? order->moveBelow(ids, parent) : order->moveAbove(ids, parent);
}
