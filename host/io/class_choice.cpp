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

// Kinds whose group 0 several classes share; for all others there is nothing more to look at.
bool isShared(std::string_view type)
{
    return type == "VERTEX" || type == "INSERT" || type == "POLYLINE" || type == "DIMENSION";
}

// Classes by group 0, those seen last: a file has few kinds and many of each.
const VcRxClass* classOf(std::string_view type)
{
    struct Seen {
        std::string type;
        const VcRxClass* cls = nullptr;
    };
    thread_local Seen seen[64];
    Seen& entry =
        seen[(type.size() * 7 +
              (type.empty() ? 0 : static_cast<unsigned char>(type[0]) * 31 + static_cast<unsigned char>(type.back()))) %
             64];
    if (entry.type != type) {
        entry.type = type;
        entry.cls = VcRxClass::findByDxfName(type.data(), type.size());
    }
    return entry.cls;
}

std::unique_ptr<VcDbObject> created(std::string_view type)
{
    const VcRxClass* cls = classOf(type);
    return cls ? std::unique_ptr<VcDbObject>(cls->create()) : newObjectOfType(type, 0, 0, {});
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
    std::unique_ptr<VcDbObject> made =
        isShared(type) ? newObjectOfType(type, integerIn(body, 70), integerIn(body, 71), lastMarker(body))
                       : created(type);
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
