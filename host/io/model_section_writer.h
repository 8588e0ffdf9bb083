// Writes the section with the binary data of solids: as it came, but for solids that have changed since or have come new.
#pragma once

#include "host/db/field_writer.h"

class DatabaseCore;
struct KeptSection;

// Whether there are solids whose data no section of the file had.
bool hasNewModelData(const DatabaseCore& db);

// The contents of the section, without its beginning and end. With no section at all (null) one is made.
void putModelSection(const DatabaseCore& db, const KeptSection* section, GroupSink& sink);
