#include "host/io/dxf_reader.h"

#include "host/base/code_page.h"
#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/kept_object.h"
#include "host/db/standard_objects.h"
#include "host/io/class_choice.h"
#include "host/io/downgrade.h"
#include "sdk/vcdb_objects.h"
#include "sdk/vcdb_tables.h"

#include <fmt/format.h>

namespace {

constexpr std::size_t kRecordsBetweenReports = 4096;
constexpr std::uint64_t kHandlesEnd = std::uint64_t(1) << 60;  // larger ones are taken for damage

std::string_view headerText(const DxfRecord& header, std::string_view variable)
{
    for (std::size_t i = 0; i + 1 < header.tags.size(); ++i)
        if (header.tags[i].code == 9 && trimBlanks(header.tags[i].view()) == variable)
            return header.tags[i + 1].form == Tag::Form::Raw ? trimBlanks(header.tags[i + 1].view()) : std::string_view();
    return {};
}

// The release that a file names; releases that came before R10 or after the newest are read as those.
DxfVersion versionOfHeader(std::string_view acadVersion)
{
    if (const auto known = versionByName(acadVersion))
        return *known;
    if (acadVersion > acadVersionName(DxfVersion::Newest) && acadVersion.substr(0, 2) == "AC")
        return DxfVersion::Newest;
    return acadVersion.empty() ? DxfVersion::R12 : DxfVersion::R10;
}

// The largest handle of the file. What the header says of the next free one is not to be relied on.
std::uint64_t largestHandle(std::string_view bytes)
{
    ProblemLog unheard;
    const auto source = DxfSource::open(bytes, true, unheard);
    DxfRecord record;
    std::uint64_t largest = 0;
    while (source->next(record))
        for (const int code : {5, 105})
            if (const auto handle = parseHandle(record.text(code)); handle && *handle < kHandlesEnd)
                largest = std::max(largest, *handle);
    return largest;
}

}

DxfReader::DxfReader(DatabaseCore& db, std::string_view bytes, const ReadOptions& options, ReadResult& result)
    : m_db(db), m_bytes(bytes), m_options(options), m_result(result)
{
}

DxfReader::~DxfReader() = default;

void DxfReader::note(std::uint32_t line, std::uint64_t handle, std::string text, bool mended)
{
    m_result.problems.add(line, handle, std::move(text), mended);
}

void DxfReader::refuse(std::uint32_t line, std::string text)
{
    if (m_stopped)
        return;
    m_stopped = true;
    m_result.status = FileStatus::Unreadable;
    m_result.line = line;
    m_result.message = fmt::format("{} {}: {}", m_source->isBinary() ? "byte" : "line", line, text);
}

// What must be known before the first text is decoded: version and code page. The header comes first in all but odd files.
void DxfReader::prescan()
{
    ProblemLog unheard;
    const auto source = DxfSource::open(m_bytes, true, unheard);
    DxfRecord record;
    std::string_view version, page;
    while (source->next(record)) {
        if (record.type == "SECTION" && record.text(2) == "HEADER") {
            version = headerText(record, "$ACADVER");
            page = headerText(record, "$DWGCODEPAGE");
            m_db.raiseHandleSeed(parseHandle(headerText(record, "$HANDSEED")).value_or(1));
            break;
        }
    }
    m_result.version = versionOfHeader(version);
    const CodePage& codePage = codePageOfFile(m_result.version, page);
    m_decoder = std::make_unique<DxfTextDecoder>(codePage);
    if (!page.empty())
        m_db.origin.codePage = page;
    if (!version.empty() && !versionByName(version))
        note(0, 0, fmt::format("$ACADVER is \"{}\"; the file is read as {}", version, releaseName(m_result.version)));
}

bool DxfReader::nextRecord()
{
    if (m_stopped)
        return false;
    if (m_recordCount++ % kRecordsBetweenReports == 0) {
        if (m_options.cancel && *m_options.cancel) {
            m_stopped = true;
            m_result.status = FileStatus::Cancelled;
            m_result.message = "reading was cancelled";
            return false;
        }
        if (m_options.progress)
            m_options.progress(static_cast<double>(m_source->position()) / static_cast<double>(std::max<std::size_t>(m_bytes.size(), 1)));
    }
    if (m_source->next(m_record))
        return true;
    if (m_source->fault())
        refuse(m_source->fault()->line, m_source->fault()->text);
    return false;
}

// The next record of the section; false when it has ended.
bool DxfReader::nextInSection()
{
    if (!nextRecord())
        return false;
    const bool endsFile = m_record.type == "EOF";
    const bool beginsNext = m_record.type == "SECTION";
    if (m_record.type != "ENDSEC" && !endsFile && !beginsNext)
        return true;
    if (endsFile || beginsNext)
        note(m_record.line, 0, "ENDSEC was missing");
    m_recordWaits = endsFile || beginsNext;
    m_sectionOpen = false;
    return false;
}

std::string DxfReader::textOf(const DxfRecord& record, int code)
{
    std::string text;
    if (const Tag* tag = record.find(code))
        m_objects->fields().textOf(*tag, text);
    return std::string(trimBlanks(text));
}

void DxfReader::read()
{
    prescan();
    m_db.loading = true;
    m_db.undo().setRecording(false);
    m_db.beforeFirstHandle = [this] { m_db.raiseHandleSeed(largestHandle(m_bytes) + 1); };
    m_source = DxfSource::open(m_bytes, m_options.recover, m_result.problems);
    m_objects = std::make_unique<ObjectReader>(m_db, m_result.version, *m_decoder, m_result.problems);
    m_db.origin.version = m_result.version;
    m_db.origin.binary = m_source->isBinary();
    m_db.origin.crLf = m_source->usesCrLf();
    m_db.origin.fromFile = true;

    bool anySection = false;
    while (!m_ended && (m_recordWaits || nextRecord())) {
        m_recordWaits = false;
        if (m_record.type == "EOF") {
            m_ended = true;
        } else if (m_record.type == "SECTION") {
            anySection = true;
            readSection();
        } else if (m_record.type == "ENDSEC") {
            note(m_record.line, 0, "ENDSEC stands outside of a section");
        } else if (m_options.recover) {
            note(m_record.line, 0, fmt::format("SECTION was expected, found {}", m_record.type), false);
            readEntity(nullptr);
        } else {
            refuse(m_record.line, fmt::format("SECTION was expected, found \"{}\"", m_record.type.substr(0, 40)));
        }
    }
    if (!m_stopped && m_sectionOpen && !m_options.recover)
        refuse(m_source->line() + 1, "the file is cut off: ENDSEC was expected, found the end of the file");
    else if (!m_stopped && !anySection && !m_options.recover)
        refuse(m_source->line() + 1, "a section was expected, found the end of the file");
    m_db.beforeFirstHandle = nullptr;  // every handle has been seen
    if (!m_stopped)
        finish();
    m_db.loading = false;
    m_db.undo().setRecording(true);
}

void DxfReader::readSection()
{
    const std::string name(m_record.text(2));
    if (name.empty()) {
        note(m_record.line, 0, "the name of a section was missing", false);
        if (!m_options.recover)
            return refuse(m_record.line + 1, "the name of a section was expected");
    }
    m_sectionOpen = true;
    if (name == "HEADER")
        readHeader();
    else if (name == "CLASSES")
        readClasses();
    else if (name == "TABLES")
        readTables();
    else if (name == "BLOCKS")
        readBlocks();
    else if (name == "ENTITIES")
        readEntities();
    else if (name == "OBJECTS")
        readObjects();
    else
        keepSection(name);
}

// A variable may come several times, as custom properties do: later ones are told apart by a number that is not written.
void DxfReader::readHeader()
{
    std::string name;
    TagList tags;
    std::unordered_map<std::string, int> seen;
    const auto store = [&] {
        if (name.empty())
            return;
        if (const int times = ++seen[name]; times > 1)
            name += fmt::format("#{}", times);
        m_db.header().set(name, std::move(tags));
        tags = {};
    };
    for (const Tag& tag : m_record.tags) {
        if (tag.code == 9) {
            store();
            m_objects->fields().textOf(tag, name);
            name = trimBlanks(name);
        } else if (!name.empty()) {
            m_objects->fields().keep(tag, tags);
        }
    }
    store();
    while (nextInSection())
        note(m_record.line, 0, fmt::format("{} in the header was passed over", m_record.type), false);
}

void DxfReader::readClasses()
{
    while (nextInSection()) {
        ClassRecord& made = m_db.classes.emplace_back();
        FieldReader& reader = m_objects->fields();
        for (const Tag& tag : m_record.tags) {
            std::int64_t number = 0;
            switch (tag.code) {
            case 1:
                reader.textOf(tag, made.dxfName);
                break;
            case 2:
                reader.textOf(tag, made.cppName);
                break;
            case 3:
                reader.textOf(tag, made.application);
                break;
            case 90:
                reader.integerOf(tag, number);
                made.proxyFlags = static_cast<std::int32_t>(number);
                break;
            case 91:
                reader.integerOf(tag, number);
                made.instanceCount = static_cast<std::int32_t>(number);
                made.hasCount = true;
                break;
            case 280:
                reader.integerOf(tag, number);
                made.wasProxy = number != 0;
                break;
            case 281:
                reader.integerOf(tag, number);
                made.isEntity = number != 0;
                break;
            default:
                reader.keep(tag, made.unclaimed);
            }
        }
    }
}

void DxfReader::keepSection(std::string_view name)
{
    KeptSection& section = m_db.keptSections.emplace_back();
    section.name = name;
    FieldReader& reader = m_objects->fields();
    for (std::size_t i = 1; i < m_record.tags.size(); ++i)
        reader.keep(m_record.tags[i], section.tags);
    while (nextInSection()) {
        section.tags.addText(0, m_record.type);
        for (const Tag& tag : m_record.tags)
            reader.keep(tag, section.tags);
    }
    section.tags.shrink();
}

void DxfReader::readObjects()
{
    ensureTables();
    while (nextInSection()) {
        const ObjectParts parts = m_objects->split(m_record, false);
        std::unique_ptr<VcDbObject> made = makeObject(m_record.type);
        VcDbObject& object = *made;
        const VcDbObjectId owner = parts.owner ? m_db.reserveHandle(parts.owner) : VcDbObjectId();
        m_objects->place(std::move(made), parts, owner, m_record.line);
        object.setOrder(++m_objectOrder);
        m_objects->fill(object, parts);
        if (m_db.rootDictionary().isNull() && object.isKindOf(VcDbDictionary::desc()))
            m_db.rootDictionary() = object.objectId();
        else if (!parts.owner)
            m_orphans.push_back(&object);
    }
}

void DxfReader::finish()
{
    closeParent();
    closeBlock();
    if (!m_ended)
        note(m_source->line(), 0, m_sectionOpen ? "the file is cut off: ENDSEC was missing" : "the end mark EOF was missing",
             !m_sectionOpen);
    if (m_source->commentsDropped())
        note(0, 0, fmt::format("{} comments inside sections were not kept", m_source->commentsDropped()));
    if (!m_source->preamble().empty()) {
        KeptSection preamble;
        for (const Tag& tag : m_source->preamble())
            m_objects->fields().keep(tag, preamble.tags);
        m_db.keptSections.insert(m_db.keptSections.begin(), std::move(preamble));
    }
    ensureTables();
    for (const VcDbObjectId table : m_madeTables)
        m_db.giveHandle(table);
    m_objects->fields().settleSpellings();
    reportImplicitRecords();
    reportDangling();
    m_db.setSpaces(space(false).objectId(), space(true).objectId());
    for (const VcDbObjectId id : m_db.table(NameTable::Block).records())
        addBlockEnds(*m_db.objectAs<VcDbBlockTableRecord>(id));
    adoptOrphans();
    m_db.origin.headerEntries = m_db.header().entries().size();
    ensureStandardObjects(m_db);
    for (int t = 0; t < 9; ++t)
        m_db.origin.tableCounts[t].read = m_db.table(NameTable(t)).records().size();
    m_result.objects = m_objects->objectsRead();
    if (m_options.progress)
        m_options.progress(1.0);
}

// An object without an owner belongs to the dictionary that lists it, or else to the root.
void DxfReader::adoptOrphans()
{
    if (m_orphans.empty())
        return;
    std::unordered_map<std::uint32_t, VcDbObjectId> holders;
    for (std::uint32_t slot = 1; slot < m_db.slotCount(); ++slot)
        if (const auto* dictionary = VcDbDictionary::cast(m_db.objectAt(slot)))
            for (const auto& [name, id] : dictionary->liveEntries())
                holders.emplace(id.slot(), dictionary->objectId());
    for (VcDbObject* orphan : m_orphans) {
        const auto holder = holders.find(orphan->objectId().slot());
        orphan->setOwnerId(holder != holders.end() ? holder->second : m_db.rootDictionary());
        note(0, m_db.handleOf(orphan->objectId()), fmt::format("a {} had no owner", dxfNameOf(*orphan)));
    }
}

// Files of R12 and older use these without listing them.
static bool isUnderstood(NameTable table, std::string_view name)
{
    return table == NameTable::Linetype && (equalNoCase(name, "ByBlock") || equalNoCase(name, "ByLayer"));
}

void DxfReader::reportImplicitRecords()
{
    constexpr const char* kKinds[] = {"layer", "linetype", "text style", "dimension style", "block",
                                      "application", "coordinate system", "view", "viewport"};
    // Layers come first in the list of tables, and those that are made need a linetype.
    for (int t = 0; t < 9; ++t) {
        for (const VcDbObjectId id : m_db.table(NameTable(t)).records()) {
            auto& record = static_cast<VcDbSymbolTableRecord&>(*m_db.object(id));
            if (!record.isImplicit())
                continue;
            record.setImplicit(false);
            if (NameTable(t) == NameTable::Linetype && isAbstractLinetype(m_db, id))
                continue; // old releases do not list them
            if (auto* layer = VcDbLayerTableRecord::cast(&record); layer && layer->linetypeObjectId().isNull())
                layer->setLinetypeObjectId(m_db.recordFor(NameTable::Linetype, "Continuous"));
            if (isUnderstood(NameTable(t), record.nameUtf8()))
                continue;
            note(0, 0, fmt::format("the {} \"{}\" is used but not defined; it was made", kKinds[t], record.nameUtf8()));
        }
    }
}

void DxfReader::reportDangling()
{
    for (std::uint32_t slot = 1; slot < m_db.slotCount(); ++slot)
        if (!m_db.objectAt(slot))
            note(0, m_db.handleOf(m_db.idAt(slot)),
                 fmt::format("handle {:X} is referred to, but no object has it", m_db.handleOf(m_db.idAt(slot))));
}
