#include "host/db/chain.h"

#include "host/base/group_code.h"
#include "host/base/unicode.h"
#include "host/base/wildcard.h"
#include "host/db/database.h"
#include "host/db/extras.h"
#include "host/db/field_reader.h"
#include "host/db/field_writer.h"
#include "host/db/kept_object.h"
#include "host/db/obj_tag_chain.h"
#include "host/db/object_factory.h"
#include "host/db/xdata.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_entity.h"
#include "sdk/vcdb_layout.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vcdb_text.h"

// Names: the slot in the first word, the serial number of the database in the second, so that a name of a drawing that has
// been closed is known to be stale.

void idToName(VcDbObjectId id, vds_name name)
{
    name[0] = id.slot();
    name[1] = id.databaseSerial();
}

bool nameToId(const vds_name name, VcDbObjectId& id)
{
    if (!name || name[0] <= 0 || name[0] > 0xffffffff || name[1] <= 0 || name[1] > 0xffffffff)
        return false;
    const VcDbObjectId candidate{std::uint32_t(name[1]), std::uint32_t(name[0])};
    const DatabaseCore* db = DatabaseCore::of(candidate);
    if (!db || !db->object(candidate))
        return false;
    id = candidate;
    return true;
}

namespace {

UcsAngle s_ucsAngle = nullptr;

// Common groups of an entity that a chain leaves out at their default.
bool isLeftOut(int code, double value)
{
    switch (code) {
    case 39:
    case 60:
    case 284:
    case 380:
        return value == 0;
    case 48:
        return value == 1;
    case 62:
        return value == 256;
    case 370:
        return value == -1;
    default:
        return false;
    }
}

class ChainSink : public GroupSink {
public:
    ChainSink(VcDbObject& object, RbBuilder& chain)
        : m_object(object), m_chain(chain), m_points(chain), m_isEntity(object.isKindOf(VcDbEntity::desc()))
    {
    }

    void real(int code, double value) override
    {
        if (m_isEntity && (m_common || code == 39) && isLeftOut(code, value))
            return;
        if (!m_points.take(code, value))
            m_chain.addReal(code, value);
    }
    void integer(int code, std::int64_t value) override
    {
        m_points.stop();
        if (m_isEntity && m_common && isLeftOut(code, double(value)))
            return;
        m_chain.addInteger(code, value);
    }
    void text(int code, std::string_view utf8) override
    {
        m_points.stop();
        if (m_isEntity && m_common && ((code == 6 && equalNoCase(utf8, "ByLayer")) || (code == 430 && utf8.empty())))
            return;
        // A damaged file may have put a text where its code calls for something else: a chain has no place for that.
        if (!isStringKind(groupKind(code)))
            return;
        m_chain.addUtf8(code, utf8);
        if (code == 100)
            enterSubclass(utf8);
    }
    void handle(int code, std::uint64_t handle) override
    {
        if (groupKind(code) == GroupKind::Reference)
            reference(code, DatabaseCore::of(m_object.objectId())->findHandle(handle), handle);
        else
            m_chain.addUtf8(code, hex(handle));
    }
    void reference(int code, VcDbObjectId id, std::uint64_t handle) override
    {
        m_points.stop();
        if (groupKind(code) != GroupKind::Reference) {
            m_chain.addUtf8(code, hex(handle));
            return;
        }
        vds_name name;
        idToName(id, name);
        m_chain.addName(code, name);
    }
    void bytes(int code, std::string_view data) override { m_chain.addBytes(code, data); }
    void point(int code, const VcGePoint3d& p) override { m_chain.addPoint(code, p.x, p.y, p.z); }
    void point2(int code, const VcGePoint2d& p) override { m_chain.addPoint(code, p.x, p.y); }

private:
    static std::string hex(std::uint64_t handle)
    {
        char text[17];
        VcDbHandle(handle).getIntoAsciiBuffer(text);
        return text;
    }
    // The space and the layout stand right behind the marker of the common groups.
    void enterSubclass(std::string_view marker)
    {
        m_common = marker == "AcDbEntity";
        const auto* entity = m_common ? VcDbEntity::cast(&m_object) : nullptr;
        if (!entity)
            return;
        const DatabaseCore* db = DatabaseCore::of(m_object.objectId());
        VcDbObjectId owner = m_object.ownerId();
        if (const auto* parent = db->objectAs<VcDbEntity>(owner))
            owner = parent->ownerId();
        const auto* block = db->objectAs<VcDbBlockTableRecord>(owner);
        m_chain.addInteger(67, block && block->isLayout() && owner != db->modelSpace());
        if (const auto* layout = block ? db->objectAs<VcDbLayout>(block->getLayoutId()) : nullptr)
            m_chain.addUtf8(410, layout->nameUtf8());
    }

    VcDbObject& m_object;
    RbBuilder& m_chain;
    PointJoiner m_points;
    bool m_isEntity;
    bool m_common = false;
};

void addHeader(VcDbObject& object, RbBuilder& chain)
{
    vds_name name;
    idToName(object.objectId(), name);
    chain.addName(-1, name);
    const auto* block = VcDbBlockTableRecord::cast(&object);
    chain.addUtf8(0, block ? "BLOCK" : dxfNameOf(object));
    char hex[17];
    object.handle().getIntoAsciiBuffer(hex);
    chain.addUtf8(object.isKindOf(VcDbDimStyleTableRecord::desc()) ? 105 : 5, hex);
}

void addReference(RbBuilder& chain, int code, VcDbObjectId id)
{
    vds_name name;
    idToName(id, name);
    chain.addName(code, name);
}

void addExtras(const ObjectExtras& extras, ChainSink& sink, RbBuilder& chain)
{
    if (!extras.reactors.empty()) {
        chain.addUtf8(102, "{ACAD_REACTORS");
        for (const VcDbObjectId id : extras.reactors)
            addReference(chain, 330, id);
        chain.addUtf8(102, "}");
    }
    if (!extras.extensionDictionary.isNull() && !extras.extensionDictionary.isErased()) {
        chain.addUtf8(102, "{ACAD_XDICTIONARY");
        addReference(chain, 360, extras.extensionDictionary);
        chain.addUtf8(102, "}");
    }
    for (const ApplicationGroup& group : extras.applicationGroups) {
        chain.addUtf8(102, "{" + group.name);
        putTags(sink, group.tags);
        chain.addUtf8(102, "}");
    }
}

void addXData(const TagList& xdata, const resbuf* applications, RbBuilder& chain)
{
    RbBuilder wanted;
    bool takes = false;
    RbPtr all(xdataToChain(xdata, std::nullopt));
    for (const resbuf* node = all.get(); node; node = node->rbnext) {
        if (node->restype == 1001) {
            takes = false;
            for (const resbuf* app = applications; app && !takes; app = app->rbnext)
                takes = Wildcard(rbUtf8(*app)).matches(rbUtf8(*node));
        }
        if (takes)
            wanted.append(copyRbNode(*node));
    }
    if (wanted.empty())
        return;
    chain.add(-3);
    chain.append(wanted.take());
}

void addFields(VcDbObject& object, ChainSink& sink)
{
    FieldWriter writer(FieldVisitor::Purpose::WriteChain, DxfVersion::Newest, *DatabaseCore::of(object.objectId()),
                       sink);
    writer.begin(object);
    object.fields(writer);
    writer.finish();
}

}

void setUcsAngleHook(UcsAngle hook) { s_ucsAngle = hook; }

double ucsAngleFor(const DatabaseCore& db, const VcDbObject& object)
{
    return s_ucsAngle ? s_ucsAngle(db, object) : 0.0;
}

// An MTEXT's direction is kept against the world; a chain measures it in the current UCS.
static void turnMText(VcDbObject& object, RbPtr& chain)
{
    if (!object.isKindOf(VcDbMText::desc()))
        return;
    const double turn = ucsAngleFor(*DatabaseCore::of(object.objectId()), object);
    for (resbuf* node = chain.get(); node && turn != 0.0; node = node->rbnext)
        if (node->restype == 50)
            node->resval.rreal -= turn;
}

RbPtr chainOf(VcDbObject& object, const resbuf* applications)
{
    RbBuilder chain;
    ChainSink sink(object, chain);
    addHeader(object, chain);
    if (const ObjectExtras* extras = object.extras())
        addExtras(*extras, sink, chain);
    addReference(chain, 330, object.ownerId());
    addFields(object, sink);
    if (applications && object.extras())
        addXData(object.extras()->xdata, applications, chain);
    RbPtr made = chain.take();
    turnMText(object, made);
    return made;
}

RbPtr tableChainOf(VcDbObject& record)
{
    RbBuilder whole;
    ChainSink sink(record, whole);
    addFields(record, sink);
    RbBuilder chain;
    const auto* block = VcDbBlockTableRecord::cast(&record);
    addReference(chain, -1, record.objectId());
    chain.addUtf8(0, block ? "BLOCK" : dxfNameOf(record));
    RbPtr all = whole.take();
    for (const resbuf* node = all.get(); node; node = node->rbnext)
        if (node->restype != 100)
            chain.append(copyRbNode(*node));
    if (block) {
        const DatabaseCore* db = DatabaseCore::of(record.objectId());
        for (const std::uint32_t slot : block->memberSlots())
            if (const VcDbObject* member = db->objectAt(slot); member && !member->isErased()) {
                addReference(chain, -2, member->objectId());
                break;
            }
    }
    return chain.take();
}

// Chains in

ChainGroups::ChainGroups(const resbuf* chain)
{
    const resbuf* node = chain;
    bool inBraces = false;
    for (; node && node->restype != -3; node = node->rbnext) {
        if (node->restype == 102 && m_markers.empty()) {
            inBraces = !rbUtf8(*node).starts_with('}');
            continue;
        }
        if (!inBraces)
            addNode(*node);
    }
    if (node)
        m_xdata = copyRbChain(node->rbnext);
}

// In a dimension style it names an arrow, in a draw order it is the handle to sort by.
bool ChainGroups::hasDataIn5() const
{
    const VcRxClass* cls = m_name ? m_name->objectClass() : nullptr;
    const std::string_view type = cls && cls->dxfName() ? std::string_view(cls->dxfName()) : m_type;
    return type == "DIMSTYLE" || type == "SORTENTSTABLE";
}

void ChainGroups::addNode(const resbuf& node)
{
    int code = node.restype;
    if (code == RTDXF0)
        code = 0;
    if (code == -1) {
        VcDbObjectId id;
        m_name = nameToId(node.resval.rlname, id) ? id : VcDbObjectId();
        return;
    }
    if (code == 0) {
        m_type = toUpper(rbUtf8(node));
        return;
    }
    // Handles and owners are the host's, as are the space and what the database works out.
    if (code < 0 || code == 105 || (code == 5 && !hasDataIn5()) || (code == 330 && m_markers.empty()) ||
        (code == 67 && m_markers.size() < 2) || code == 410)
        return;
    switch (groupKind(code)) {
    case GroupKind::Point:
        m_wellFormed &=
            std::all_of(node.resval.rpoint, node.resval.rpoint + 3, [](double c) { return std::isfinite(c); });
        m_tags.push_back(Tag::ofPoint(code, node.resval.rpoint[0], node.resval.rpoint[1], node.resval.rpoint[2]));
        return;
    case GroupKind::Real:
        m_wellFormed &= std::isfinite(rbReal(node));
        m_tags.push_back(Tag::ofReal(code, rbReal(node)));
        return;
    case GroupKind::Int16:
    case GroupKind::Int32:
    case GroupKind::Int64:
    case GroupKind::Bool:
        m_tags.push_back(Tag::ofInteger(code, rbInteger(node)));
        return;
    case GroupKind::Reference: {
        VcDbObjectId id;
        nameToId(node.resval.rlname, id);
        m_tags.push_back(Tag::ofInteger(code, packId(id), Tag::Form::Id));
        return;
    }
    case GroupKind::Binary:
        m_tags.push_back(Tag::ofChars(code, Tag::Form::Bytes, m_texts.emplace_back(rbBytes(node))));
        return;
    case GroupKind::String:
    case GroupKind::Handle: {
        const std::string& text = m_texts.emplace_back(rbUtf8(node));
        m_tags.push_back(Tag::ofChars(code, Tag::Form::Utf8, text));
        if (code == 100)
            m_markers.push_back(text);
        return;
    }
    case GroupKind::None:
        m_wellFormed = false;
        return;
    }
}

const Tag* ChainGroups::find(int code) const
{
    for (const Tag& tag : m_tags)
        if (tag.code == code)
            return &tag;
    return nullptr;
}

std::string ChainGroups::textOf(int code) const
{
    const Tag* tag = find(code);
    return tag && tag->form == Tag::Form::Utf8 ? std::string(tag->view()) : std::string();
}

std::int64_t ChainGroups::integerOf(int code, std::int64_t byDefault) const
{
    const Tag* tag = find(code);
    return tag && tag->form == Tag::Form::Integer ? tag->integer : byDefault;
}

namespace {

// An MTEXT takes its angle from 50 where the chain has it, whatever 11 says.
void preferMTextAngle(const VcDbObject& object, std::span<Tag> tags, const DatabaseCore& db)
{
    if (!object.isKindOf(VcDbMText::desc()))
        return;
    for (Tag& angle : tags) {
        if (angle.code != 50 || angle.form != Tag::Form::Real)
            continue;
        angle.real += ucsAngleFor(db, object);
        for (Tag& direction : tags)
            if (direction.code == 11)
                direction.taken = true;
    }
}

bool isPropertyOfEveryEntity(int code)
{
    static constexpr int kCodes[] = {6, 8, 48, 60, 62, 370, 420, 430, 440};
    return std::ranges::find(kCodes, code) != std::end(kCodes);
}

// Chains put together by hand have the layer or the colour behind the groups of the class as often as ahead of them, as in
// (append (entget e) '((62 . 1))). Such groups count when neither the class nor its proper place has taken one.
void readStrayProperties(VcDbObject& object, std::span<Tag> tags, FieldReader& reader)
{
    constexpr int kTakenAsEntity = 2;  // the call of fields() that follows the one without a marker
    VcDbEntity* entity = VcDbEntity::cast(&object);
    const auto isStray = [](const Tag& tag) { return !tag.taken && isPropertyOfEveryEntity(tag.code); };
    if (!entity || std::ranges::none_of(tags, isStray))
        return;
    std::vector<Tag> properties;
    for (const Tag& tag : tags)
        if (tag.taken == kTakenAsEntity && tag.code != 100)
            properties.push_back(tag);
    std::ranges::copy_if(tags, std::back_inserter(properties), isStray);
    for (Tag& tag : properties)
        tag.taken = 0;
    reader.begin(properties);
    entity->VcDbEntity::fields(reader);
}

Vcad::ErrorStatus readFields(VcDbObject& object, ChainGroups& groups, DatabaseCore& db)
{
    ProblemLog problems;
    FieldReader reader(FieldVisitor::Purpose::ReadChain, DxfVersion::Newest, db, nullptr, &problems);
    preferMTextAngle(object, groups.tags(), db);
    reader.begin(groups.tags());
    object.fields(reader);
    if (!reader.failed())
        readStrayProperties(object, groups.tags(), reader);
    return reader.failed() ? Vcad::eInvalidInput : Vcad::eOk;
}

}

// What no command could make; files that hold it are read all the same.
static bool isSound(const VcDbObject& object)
{
    if (const auto* circle = VcDbCircle::cast(&object))
        return circle->radius() > 0;
    if (const auto* arc = VcDbArc::cast(&object))
        return arc->radius() > 0;
    return true;
}

Vcad::ErrorStatus applyChain(VcDbObject& object, ChainGroups& groups)
{
    DatabaseCore* db = DatabaseCore::of(object.objectId());
    if (!db || !groups.isWellFormed())
        return Vcad::eInvalidInput;
    RbPtr xdata = groups.takeXData();
    const std::unique_ptr<VcDbObject> before = object.copyOf();
    object.assertWriteEnabled();
    Vcad::ErrorStatus status = readFields(object, groups, *db);
    if (!status && !isSound(object))
        status = Vcad::eOutOfRange;
    if (!status && xdata)
        status = object.setXData(xdata.get());
    if (status) {
        object.assignFrom(*before);
        object.stateRestored(*before);
        return status;
    }
    object.fieldsChanged();
    return Vcad::eOk;
}

Vcad::ErrorStatus readChainInto(VcDbObject& object, ChainGroups& groups)
{
    DatabaseCore* db = DatabaseCore::of(object.objectId());
    return db && groups.isWellFormed() ? readFields(object, groups, *db) : Vcad::eInvalidInput;
}

std::unique_ptr<VcDbObject> objectOfChain(DatabaseCore& db, ChainGroups& groups)
{
    const std::string last = groups.markers().empty() ? std::string() : groups.markers().back();
    std::unique_ptr<VcDbObject> object = newObjectOfType(
        groups.type(), groups.integerOf(70, groups.type() == "INSERT" ? 1 : 0), groups.integerOf(71, 1), last);
    if (!object || !groups.isWellFormed())
        return nullptr;
    if (auto* entity = VcDbEntity::cast(object.get())) {
        EntityProps props;
        props.layer = db.face().clayer();
        props.linetype = db.findRecord(NameTable::Linetype, "ByLayer");
        entity->setProps(props);
    }
    if (readFields(*object, groups, db) || !isSound(*object))
        return nullptr;
    if (const RbPtr xdata = groups.takeXData()) {
        TagList merged;
        if (mergeXData({}, xdata.get(), &db, merged))
            return nullptr;
        object->makeExtras().xdata = std::move(merged);
    }
    return object;
}
