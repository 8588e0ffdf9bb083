#include "host/io/drawing_file.h"

#include "host/base/code_page.h"
#include "host/db/database.h"
#include "host/db/let_go.h"
#include "host/io/atomic_file.h"
#include "host/io/downgrade.h"
#include "host/io/dxf_reader.h"
#include "host/io/dxf_writer.h"
#include "host/io/julian_date.h"
#include "host/io/legacy_sink.h"
#include "host/io/let_go_sink.h"
#include "host/io/mapped_file.h"

#include <cctype>
#include <fmt/format.h>

namespace {

// "AC" and four digits at the very start: no DXF file begins so.
bool looksLikeDwg(std::string_view bytes)
{
    return bytes.size() >= 6 && bytes.substr(0, 2) == "AC" &&
           std::all_of(bytes.begin() + 2, bytes.begin() + 6, [](char c) { return (c >= '0' && c <= '9') || c == '.'; });
}

bool hasDamagedSentinel(std::string_view bytes)
{
    const std::string_view words = kBinarySentinel.substr(0, 18);
    return bytes.substr(0, words.size()) == words && !isBinaryDxf(bytes);
}

ReadResult failed(ReadResult& result, FileStatus status, std::string message)
{
    result.status = status;
    result.message = std::move(message);
    return std::move(result);
}

DxfVersion versionToWrite(const DatabaseCore& db, const WriteOptions& options)
{
    const DxfVersion wanted = options.version.value_or(std::max(db.origin.version, DxfVersion::R2000));
    if (wanted < DxfVersion::R12)
        return DxfVersion::R12;
    return wanted == DxfVersion::R13 || wanted == DxfVersion::R14 ? DxfVersion::R2000 : wanted;
}

// Everything as it goes into the file, to a sink of bytes.
void produce(DatabaseCore& db, const WriteOptions& options, WriteResult& result, ByteSink& sink)
{
    const OutputFormat format{result.version, options.binary.value_or(db.origin.binary), db.origin.crLf};
    const CodePage& page = codePageOfFile(result.version, db.origin.codePage);
    const auto output = GroupOutput::create(format, page, sink);
    LegacySink legacy(*output, db.origin.version <= DxfVersion::R12);
    NewerPartsSink older(*output);
    GroupSink* groups = output.get();
    if (result.version < DxfVersion::R13)
        groups = &legacy;
    else if (result.version < DxfVersion::R2018 && db.origin.version > result.version)
        groups = &older;
    const LetGo letGo(db, LetGo::Members::OwnAndReferences);
    LetGoSink settled(*groups, handlesInPlace(db, letGo));
    DxfWriter writer(db, result.version, letGo.isEmpty() ? *groups : settled, letGo, options, result);
    if (!writer.write()) {
        result.status = FileStatus::Cancelled;
        result.message = "saving was cancelled";
    }
    output->flush();
    result.bytes = output->bytes();
    for (const auto& [type, count] : objectsWithoutPlace(db, result.version, letGo)) {
        result.droppedByType[type] += count;
        result.dropped += count;
    }
}

bool s_dryRun = false;

std::string listOf(const std::map<std::string, std::size_t>& byType)
{
    std::string list;
    for (const auto& [type, count] : byType)
        list += fmt::format("{}{} {}", list.empty() ? "" : ", ", count, type);
    return list;
}

// An older release may have no place for something: that is found out before anything is written.
bool refusesLoss(DatabaseCore& db, const WriteOptions& options, WriteResult& result)
{
    // What came in as 2000 or newer finds its place there again; R12 lacks what may have been made since.
    if (options.allowLoss || (result.version >= db.origin.version && result.version > DxfVersion::R12))
        return false;
    WriteResult trial;
    trial.version = result.version;
    NullSink nowhere;
    WriteOptions quiet = options;
    quiet.progress = nullptr;
    produce(db, quiet, trial, nowhere);
    if (trial.dropped == 0)
        return false;
    result.status = FileStatus::Refused;
    result.dropped = trial.dropped;
    result.droppedByType = trial.droppedByType;
    result.message = fmt::format("release {} has no place for {}; nothing was written", releaseName(result.version),
                                 listOf(trial.droppedByType));
    return true;
}

// A database that was made to be read into, and was not.
bool hasNothing(const DatabaseCore& db, WriteResult& result)
{
    if (!db.tableId(NameTable::Layer).isNull())
        return false;
    result.status = FileStatus::NotSaved;
    result.message = "there is no drawing to save: nothing has been read";
    return true;
}

// $TDUPDATE and $TDUUPDATE say when the drawing was last saved.
void touch(DatabaseCore& db)
{
    const JulianNow now = julianNow();
    db.header().setReal("$TDUPDATE", 40, now.local);
    if (db.header().has("$TDUUPDATE"))
        db.header().setReal("$TDUUPDATE", 40, now.universal);
}

}

ReadResult readDrawingBytes(VcDbDatabase& database, std::string_view bytes, const ReadOptions& options)
{
    ReadResult result;
    if (looksLikeDwg(bytes))
        return failed(result, FileStatus::Unsupported,
                      fmt::format("this is a DWG file ({}); DWG is not read, DXF is", bytes.substr(0, 6)));
    if (hasDamagedSentinel(bytes))
        return failed(result, FileStatus::Unreadable,
                      "byte 18: this was a binary DXF file, but its line ends were converted on the way, which "
                      "destroys its data");
    if (bytes.empty())
        return failed(result, FileStatus::Unreadable, "line 1: a section was expected, but the file is empty");
    if (!isBinaryDxf(bytes) && !looksLikeAsciiDxf(bytes) && !options.recover) {
        result.line = 1;
        return failed(result, FileStatus::Unreadable, "line 1: group 0 of a section was expected; this is no DXF file");
    }
    DxfReader(database.core(), bytes, options, result).read();
    return result;
}

ReadResult readDrawing(VcDbDatabase& database, const std::string& path, const ReadOptions& options)
{
    const MappedFile file(path);
    if (!file.isOpen()) {
        ReadResult result;
        return failed(result, FileStatus::NotFound, fmt::format("cannot open {}: {}", path, file.error()));
    }
    ReadResult result = readDrawingBytes(database, file.bytes(), options);
    database.core().origin.path = path;
    return result;
}

WriteResult writeDrawingBytes(VcDbDatabase& database, std::string& bytes, const WriteOptions& options)
{
    WriteResult result;
    DatabaseCore& db = database.core();
    result.version = versionToWrite(db, options);
    if (hasNothing(db, result) || refusesLoss(db, options, result))
        return result;
    if (options.touchTimes)
        touch(db);
    StringSink sink(bytes);
    produce(db, options, result, sink);
    return result;
}

void setDryRun(bool on) { s_dryRun = on; }

WriteResult writeDrawing(VcDbDatabase& database, const std::string& path, const WriteOptions& options)
{
    WriteResult result;
    DatabaseCore& db = database.core();
    result.path = path;
    result.version = versionToWrite(db, options);
    if (hasNothing(db, result) || refusesLoss(db, options, result))
        return result;
    if (options.touchTimes)
        touch(db);
    if (options.dryRun || s_dryRun) {
        NullSink nowhere;
        produce(db, options, result, nowhere);
        return result;
    }
    AtomicFile file(path);
    if (file.error().empty())
        produce(db, options, result, file);
    if (result.ok() && !file.commit(options.keepBackup)) {
        result.status = FileStatus::NotSaved;
        result.message = file.error();
    }
    result.backup = options.keepBackup ? file.backup() : std::string();
    return result;
}
