// Drawings in files: reading one into a database, and saving one so that what stood there is never lost.
#pragma once

#include "host/base/api.h"
#include "host/db/field_visitor.h"
#include "host/db/problems.h"

#include <atomic>
#include <functional>
#include <map>
#include <optional>
#include <string>

class VcDbDatabase;

// Called now and then with how much of the work is done, from 0 to 1.
using FileProgress = std::function<void(double)>;

enum class FileStatus {
    Ok,
    NotFound,    // or not to be opened
    Unreadable,  // broken, cut off, or no drawing
    Unsupported,
    Cancelled,
    Refused,   // saving would drop something
    NotSaved,  // the folder or the disk does not take it
};

struct ReadOptions {
    bool recover = false;
    FileProgress progress;
    const std::atomic<bool>* cancel = nullptr;
};

struct ReadResult {
    FileStatus status = FileStatus::Ok;
    std::string message;     // what is wrong when status is not Ok, a sentence
    std::uint32_t line = 0;  // of an ASCII file, or the byte offset of a binary one; 0 where none is at fault
    ProblemLog problems;
    DxfVersion version = DxfVersion::R2018;
    std::size_t entities = 0;  // without sub-entities and what begins and ends blocks
    std::size_t objects = 0;   // everything that has a handle
    bool ok() const { return status == FileStatus::Ok; }
};

struct WriteOptions {
    std::optional<DxfVersion> version;  // by default the one that came in, never older than R2000
    std::optional<bool> binary;         // by default as it came in
    bool allowLoss = false;
    bool keepBackup = true;
    bool dryRun = false;      // everything but the file
    bool touchTimes = false;  // brings $TDUPDATE and its kin up to date
    FileProgress progress;
    const std::atomic<bool>* cancel = nullptr;
};

struct WriteResult {
    FileStatus status = FileStatus::Ok;
    std::string message;
    std::string path;
    std::string backup;  // where what stood there went; empty when nothing did
    DxfVersion version = DxfVersion::R2018;
    std::size_t kept = 0, rewrote = 0, dropped = 0;  // objects
    std::map<std::string, std::size_t> rewroteByType, droppedByType;
    std::size_t bytes = 0;
    bool ok() const { return status == FileStatus::Ok; }
};

// Into a database that was made without defaults. What kind of file it is its content says, not its name.
VKHOST_API ReadResult readDrawing(VcDbDatabase& database, const std::string& path, const ReadOptions& options = {});
VKHOST_API ReadResult readDrawingBytes(VcDbDatabase& database, std::string_view bytes, const ReadOptions& options = {});

VKHOST_API WriteResult writeDrawing(VcDbDatabase& database, const std::string& path, const WriteOptions& options = {});
VKHOST_API WriteResult writeDrawingBytes(VcDbDatabase& database, std::string& bytes, const WriteOptions& options = {});

// From then on every save of the process is a dry run, whoever asks for it.
VKHOST_API void setDryRun(bool on);

// "AC1015" and the like; "2000", "R12", "AC1015" as people write them.
VKHOST_API const char* acadVersionName(DxfVersion version);
VKHOST_API const char* releaseName(DxfVersion version);
VKHOST_API std::optional<DxfVersion> versionByName(std::string_view name);
