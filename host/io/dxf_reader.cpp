#include "host/io/dxf_reader.h"

#include "host/base/code_page.h"
#include "host/base/numbers.h"
#include "host/db/database.h"

#include <fmt/format.h>

namespace {

constexpr std::size_t kRecordsBetweenReports = 4096;
constexpr std::uint64_t kHandlesEnd = std::uint64_t(1) << 60;  // larger ones are taken for damage

std::string_view headerText(const DxfRecord& header, std::string_view variable)
{
    for (std::size_t i = 0; i + 1 < header.tags.size(); ++i)
        if (header.tags[i].code == 9 && trimBlanks(header.tags[i].view()) == variable)
            return header.tags[i + 1].form == Tag::Form::Raw ? trimBlanks(header.tags[i + 1].view())
                                                             : std::string_view();
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
            m_options.progress(static_cast<double>(m_source->position()) /
                               static_cast<double>(std::max<std::size_t>(m_bytes.size(), 1)));
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
        m_objects->values().text(*tag, text);
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
