// What the fuzzers of drawing files do with one input: read it, strictly and in recovery, audit it, write what was read.
#pragma once

#include "host/io/audit.h"
#include "host/io/drawing_file.h"
#include "sdk/vcdb_database.h"

#include <string>
#include <string_view>

inline void exerciseDrawing(std::string_view bytes)
{
    for (const bool recover : {false, true}) {
        VcDbDatabase database(false);
        ReadOptions reading;
        reading.recover = recover;
        if (!readDrawingBytes(database, bytes, reading).ok())
            continue;
        auditDrawing(database, recover);
        for (const DxfVersion version : {DxfVersion::R2018, DxfVersion::R12}) {
            std::string copy;
            WriteOptions writing;
            writing.version = version;
            writing.binary = recover;
            writing.allowLoss = true;
            writeDrawingBytes(database, copy, writing);
        }
    }
}
