// Groups that are kept whole, to and from chains of result buffers.
#pragma once

#include "host/base/rb.h"
#include "host/db/tag.h"

class DatabaseCore;

// Puts the coordinates of a point together as they come one behind the other: 10, 20 and 30 are one node.
class PointJoiner {
public:
    explicit PointJoiner(RbBuilder& chain) : m_chain(chain) {}
    // True when the number is a coordinate, which then is in the chain.
    bool take(int code, double value);
    // Something else came.
    void stop() { m_point = nullptr; }

private:
    RbBuilder& m_chain;
    resbuf* m_point = nullptr;
    int m_axis = 0;
};

// References become entity names of the drawing, without one no name; 10, 20, 30 become one node. Null for an empty list.
VKHOST_API RbPtr tagsToChain(const TagList& tags, const DatabaseCore* db);

// False when a code has no value of its own or a reference leads out of the drawing; tags is then left alone.
VKHOST_API bool chainToTags(const resbuf* chain, const DatabaseCore* db, TagList& tags);
