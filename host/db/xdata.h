// Extended data between the packed form that objects keep and chains.
#pragma once

#include "host/db/tag.h"
#include "sdk/resbuf.h"
#include "sdk/vkdefs.h"

#include <optional>
#include <string>

class DatabaseCore;

constexpr std::size_t kXDataLimit = 16 * 1024 - 1;  // bytes of extended data that an object may carry

// A chain of 1001 groups and values, of one application or of all; null when there is nothing.
resbuf* xdataToChain(const TagList& xdata, const std::optional<std::string>& application);

// Replaces the data of every application that the chain names; a 1001 with nothing behind it takes the data away.
// Fails with eXdataSizeExceeded, or eRegAppIdNotFound for an application that the drawing does not know.
Vcad::ErrorStatus mergeXData(const TagList& old, const resbuf* chain, DatabaseCore* db, TagList& merged);

// Bytes that the data counts for against the limit.
std::size_t xdataSize(const TagList& xdata);
