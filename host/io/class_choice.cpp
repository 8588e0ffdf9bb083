#include "host/io/class_choice.h"

#include "host/base/numbers.h"
#include "host/db/kept_object.h"
#include "host/db/object_factory.h"

namespace {

std::int64_t integerIn(std::span<const Tag> body, int code)
{
    for (const Tag& tag : body) {
        if (tag.code != code)
            continue;
        if (tag.form == Tag::Form::Integer)
            return tag.integer;
        return tag.form == Tag::Form::Raw ? parseIntegerLoosely(tag.view()).value_or(0) : 0;
    }
    return 0;
}

// The last marker, which names the most derived class.
std::string_view lastMarker(std::span<const Tag> body)
{
    for (auto tag = body.rbegin(); tag != body.rend(); ++tag)
        if (tag->code == 100 && tag->form == Tag::Form::Raw)
            return trimBlanks(tag->view());
    return {};
}

}

std::unique_ptr<VcDbObject> makeEntity(std::string_view type, std::span<const Tag> body)
{
    std::unique_ptr<VcDbObject> made = newObjectOfType(type, integerIn(body, 70), integerIn(body, 71), lastMarker(body));
    if (!made || !made->isKindOf(VcDbEntity::desc()))
        made = std::make_unique<VcDbKeptEntity>(type);
    return made;
}

std::unique_ptr<VcDbObject> makeObject(std::string_view type)
{
    std::unique_ptr<VcDbObject> made = newObjectOfType(type, 0, 0, {});
    if (!made || made->isKindOf(VcDbEntity::desc()))
        made = std::make_unique<VcDbKeptObject>(type);
    return made;
}
