// What the tables of system variables are written with, and the tables by subject. Only they include this.
#pragma once

#include "host/edit/sysvar_table.h"

namespace vk::edit {

using enum SysVarType;
using enum SysVarHome;

constexpr bool rw = false;
constexpr bool ro = true;

constexpr int kAllShorts = 32767;

constexpr SysVarRange between(double min, double max) { return {SysVarRange::Between, min, max}; }
constexpr SysVarRange atLeast(double min) { return {SysVarRange::Between, min, SysVarRange::kNoLimit}; }
constexpr SysVarRange bits(int mask) { return {SysVarRange::Bits, 0, double(mask)}; }
constexpr SysVarRange oneOf(std::span<const int> values) { return {SysVarRange::OneOf, 0, 0, values}; }

constexpr SysVarRange kAny = {};
constexpr SysVarRange kFlag = between(0, 1);
constexpr SysVarRange kPositive = {SysVarRange::Above};
constexpr SysVarRange kNotZero = {SysVarRange::NotZero};
constexpr SysVarRange kName = between(1, 255);
constexpr SysVarRange kColour = between(0, 256);   // 0 by block, 256 by layer
constexpr SysVarRange kPrecision = between(0, 8);  // decimal places
constexpr SysVarRange kZeros = between(0, 15);     // suppression of zeros, with 0 to 3 for feet and inches

// Hundredths of a millimetre; -3 default, -2 by block, -1 by layer.
inline constexpr int kLineweightValues[] = {-3, -2, -1, 0,  5,  9,  13,  15,  18,  20,  25,  30,  35, 40,
                                            50, 53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};
constexpr SysVarRange kLineweight = oneOf(kLineweightValues);

std::span<const SysVarDef> annotationSysVars();
std::span<const SysVarDef> dimensionSysVars();
std::span<const SysVarDef> drawingSysVars();
std::span<const SysVarDef> fileSysVars();
std::span<const SysVarDef> interfaceSysVars();
std::span<const SysVarDef> selectionSysVars();
std::span<const SysVarDef> sessionSysVars();
std::span<const SysVarDef> solidSysVars();
std::span<const SysVarDef> unitSysVars();
std::span<const SysVarDef> viewSysVars();

}  // namespace vk::edit
