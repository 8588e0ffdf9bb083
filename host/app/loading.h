// Reading and saving a drawing with all that is said about it.
#pragma once

#include "host/app/options.h"
#include "host/io/drawing_file.h"
#include "sdk/vcdb_database.h"

#include <memory>

namespace vk::app {

class Remarks;

struct Loaded {
    int status = kDone;
    ReadResult read;
    std::unique_ptr<VcDbDatabase> database;
};

// Refusals are told; with quiet the faults that were mended are left to the caller.
Loaded load(const std::string& path, bool recover, Remarks& remarks, bool quiet = false);

// Reads the files of its external references; what cannot be had is told and is no failure.
void loadReferences(VcDbDatabase& database, Remarks& remarks);

WriteOptions writeOptions(const SaveOptions& save);
// Saves and gives the receipt, or says why not.
WriteResult saveAs(VcDbDatabase& database, const std::string& path, WriteOptions how, Remarks& remarks);

}  // namespace vk::app
