// Groups that are kept whole, to and from chains of result buffers.
#pragma once

#include "host/base/rb.h"
#include "host/db/tag.h"

class DatabaseCore;

// References become entity names of the drawing, without one no name; 10, 20, 30 become one node. Null for an empty list.
VKHOST_API RbPtr tagsToChain(const TagList& tags, const DatabaseCore* db);

// False when a code has no value of its own or a reference leads out of the drawing; tags is then left alone.
VKHOST_API bool chainToTags(const resbuf* chain, const DatabaseCore* db, TagList& tags);
