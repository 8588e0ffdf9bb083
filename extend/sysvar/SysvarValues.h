// Values of system variables between their texts in the dialog and the nodes in which the host gives and takes them.
//
// A node of a text owns it; release it with releaseValue.
#pragma once

#include "resbuf.h"
#include "sysvar/SysvarCatalogue.h"

enum class SysvarKind { Integer, Long, Real, Point2d, Point3d, Switch, String, Character, Other };
// Of a type's name, without regard to case.
SysvarKind kindOf(const CStdStrW& type);

// Takes the present value, and the type where the host's own is known: it counts for more than what the catalogue says.
void takeValue(SysvarData& record, const resbuf& value);

// Puts the record's new value into the node, which holds the present one. False when the text says nothing that could
// be set.
bool putNewValue(const SysvarData& record, resbuf& value);

// A node of its own for a value that was read from a file. False for a number that does not fit into a short one.
bool makeValue(const SysvarData& record, const wchar_t* text, resbuf& value);

// The value as an expression of the script language.
CStdStrW scriptValue(const SysvarData& record, const resbuf& value);

void releaseValue(resbuf& value);
