#include "host/db/object_factory.h"

#include "host/db/ent_factories.h"

std::unique_ptr<VcDbObject> newObjectOfType(std::string_view type, std::int64_t group70, std::int64_t group71,
                                            std::string_view lastMarker)
{
    if (type == "POLYLINE")
        return createPolyline(group70, lastMarker);
    if (type == "VERTEX")
        return createVertex(group70, lastMarker);
    if (type == "INSERT")
        return createInsert(group70, group71, lastMarker);
    if (type == "DIMENSION")
        return createDimension(group70, lastMarker);
    const std::string_view stored = type == "3DLINE" ? "LINE" : type;
    const VcRxClass* cls = VcRxClass::findByDxfName(stored.data(), stored.size());
    return std::unique_ptr<VcDbObject>(cls ? cls->create() : nullptr);
}
