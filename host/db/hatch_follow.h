// Associative hatches follow the objects that bound them.
#pragma once

#include <cstddef>

class DatabaseCore;

// After the changes since a position of the undo journal: a hatch whose boundary objects have changed takes their shape. It
// no longer follows them where they bound nothing any more, or where it has been changed for itself.
void followBoundaries(DatabaseCore& db, std::size_t since);
