// The section in which newer drawings keep the binary data of their solids, by the handle of each.
#pragma once

#include "host/base/api.h"

#include <cstdint>
#include <memory>
#include <string>

class DatabaseCore;

using ModelData = std::shared_ptr<const std::string>;

constexpr const char* kModelSection = "ACDSDATA";
constexpr const char* kModelRecord = "ACDSRECORD";
constexpr const char* kModelDataName = "ASM_Data";

// Null where the section has none. The section is gone through when it is first asked.
VKHOST_API ModelData sectionModelData(const DatabaseCore& db, std::uint64_t handle);
void forgetModelSection(std::uint32_t databaseSerial);
