#include "host/io/class_choice.h"

#include "host/base/numbers.h"
#include "host/db/ent_factories.h"
#include "host/db/kept_object.h"

// Of the seven dimensions that share a group 0, by group 70 and the last marker.
std::unique_ptr<VcDbObject> createDimension(std::int64_t flags, std::string_view marker);

namespace {

std::int64_t integerIn(std::span<const Tag> body, int code, std::int64_t byDefault)
{
    for (const Tag& tag : body) {
        if (tag.code != code)
            continue;
        if (tag.form == Tag::Form::Integer)
            return tag.integer;
        return tag.form == Tag::Form::Raw ? parseIntegerLoosely(tag.view()).value_or(byDefault) : byDefault;
    }
    return byDefault;
}

// The last marker, which names the most derived class.
std::string_view lastMarker(std::span<const Tag> body)
{
    for (auto tag = body.rbegin(); tag != body.rend(); ++tag)
        if (tag->code == 100 && tag->form == Tag::Form::Raw)
            return trimBlanks(tag->view());
    return {};
}

std::unique_ptr<VcDbObject> createByName(std::string_view type)
{
    const VcRxClass* cls = VcRxClass::findByDxfName(type.data(), type.size());
    return std::unique_ptr<VcDbObject>(cls ? cls->create() : nullptr);
}

std::unique_ptr<VcDbObject> createEntity(std::string_view type, std::span<const Tag> body)
{
    if (type == "POLYLINE")
        return createPolyline(integerIn(body, 70, 0), lastMarker(body));
    if (type == "VERTEX")
        return createVertex(integerIn(body, 70, 0), lastMarker(body));
    if (type == "INSERT")
        return createInsert(integerIn(body, 70, 1), integerIn(body, 71, 1));
    if (type == "DIMENSION")
        return createDimension(integerIn(body, 70, 0), lastMarker(body));
    return createByName(type == "3DLINE" ? "LINE" : type);
}

}

std::unique_ptr<VcDbObject> makeEntity(std::string_view type, std::span<const Tag> body)
{
    std::unique_ptr<VcDbObject> made = createEntity(type, body);
    if (!made || !made->isKindOf(VcDbEntity::desc()))
        made = std::make_unique<VcDbKeptEntity>(type);
    return made;
}

std::unique_ptr<VcDbObject> makeObject(std::string_view type)
{
    std::unique_ptr<VcDbObject> made = createByName(type);
    if (!made || made->isKindOf(VcDbEntity::desc()))
        made = std::make_unique<VcDbKeptObject>(type);
    return made;
}
