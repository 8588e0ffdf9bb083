// System variables by value; 0 or the origin where one cannot be read.
#pragma once

#include "vcge.h"

int shortVariable(const wchar_t* name);
double realVariable(const wchar_t* name);
VcGePoint3d pointVariable(const wchar_t* name);
