// Header variables of a new drawing.
#pragma once

class DatabaseCore;

// Sets those that are missing, in the customary order. The current styles must be there.
void ensureHeaderVariables(DatabaseCore& db, bool metric);
