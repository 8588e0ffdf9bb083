#include "host/app/changes.h"

#include "host/base/rb.h"
#include "host/db/chain.h"
#include "host/db/database.h"
#include "host/db/kept_object.h"
#include "host/db/let_go.h"
#include "host/db/undo.h"

#include <fmt/format.h>

namespace vk::app {

namespace {

RbPtr wholeChain(VcDbObject& object)
{
    RbBuilder everyApplication;
    everyApplication.addUtf8(RTSTR, "*");
    return chainOf(object, everyApplication.take().get());
}

bool isSameChain(const resbuf* a, const resbuf* b)
{
    for (; a && b; a = a->rbnext, b = b->rbnext)
        if (!sameRbValue(*a, *b))
            return false;
    return a == b;
}

bool isAsBefore(VcDbObject& object, const VcDbObject& before)
{
    const std::unique_ptr<VcDbObject> copy = before.copyOf();
    return isSameChain(wholeChain(object).get(), wholeChain(*copy).get());
}

}

Changes changesOf(DatabaseCore& db)
{
    Changes changes;
    const LetGo letGo(db);
    for (const UndoJournal::Touched& touched : db.undo().touchedSince(0)) {
        VcDbObject* object = db.object(touched.id);
        const bool isGone = object && (object->isErased() || letGo.contains(*object));
        if (!object || (touched.created && isGone))
            continue;
        if (!touched.created && !isGone && (!touched.before || isAsBefore(*object, *touched.before)))
            continue;
        HandlesByType& list = touched.created ? changes.added : isGone ? changes.erased : changes.modified;
        list[dxfNameOf(*object)].push_back(fmt::format("{:X}", db.handleOf(touched.id)));
    }
    return changes;
}

}  // namespace vk::app
