// What the fuzzers of drawing files do with one input: read it, strictly and in recovery, audit it, ask its entities what
// users ask them, write what was read.
#pragma once

#include "host/db/chain.h"
#include "host/db/database.h"
#include "host/io/audit.h"
#include "host/io/drawing_file.h"
#include "sdk/vcdb_entity.h"

#include <memory>
#include <string>
#include <string_view>

inline void askEntities(DatabaseCore& db)
{
    for (std::uint32_t slot = 1; slot < db.slotCount(); ++slot) {
        auto* entity = VcDbEntity::cast(db.objectAt(slot));
        if (!entity || entity->isErased())
            continue;
        VcDbExtents extents;
        entity->getGeomExtents(extents);
        std::vector<VcDbEntity*> pieces;
        entity->explode(pieces);
        for (VcDbEntity* piece : pieces)
            delete piece;
        chainOf(*entity);
        const std::unique_ptr<VcDbObject> copy = entity->copyOf();
        copy->detach();
        static_cast<VcDbEntity&>(*copy).transformBy(VcGeMatrix3d::scaling(-2.0, VcGePoint3d(1, 2, 3)));
    }
}

inline void writeCopies(VcDbDatabase& database, bool binary)
{
    for (const DxfVersion version : {DxfVersion::R2018, DxfVersion::R12}) {
        std::string copy;
        WriteOptions writing;
        writing.version = version;
        writing.binary = binary;
        writing.allowLoss = true;
        writeDrawingBytes(database, copy, writing);
    }
}

inline void exerciseDrawing(std::string_view bytes)
{
    for (const bool recover : {false, true}) {
        VcDbDatabase database(false);
        ReadOptions reading;
        reading.recover = recover;
        if (!readDrawingBytes(database, bytes, reading).ok())
            continue;
        auditDrawing(database, recover);
        askEntities(database.core());
        writeCopies(database, recover);
    }
}
